#include "engine/BiquadFilter.h"

void BiquadFilter::process (double* io) noexcept
{
    const bool gliding = tuning.isGliding();
    double s1 = state1, s2 = state2;

    // Held in registers unless a glide changes them during the block.
    auto c = tuning.getCoefficients();

    for (int n = 0; n < blockSize; ++n)
    {
        if (gliding)
        {
            tuning.advance();
            c = tuning.getCoefficients();
        }

        // Transposed direct form II, with each new output entering the
        // states last: the next output then waits for one multiply and one
        // subtraction, not four steps (the sums differ in the last bits).
        const double x = io[n];
        const double y = c.b0 * x + s1;
        s1 = ((c.b1 * x + 1e-20) + s2) - c.a1 * y;
        s2 = (c.b2 * x + 1e-20) - c.a2 * y;
        io[n] = y;
    }

    state1 = s1;
    state2 = s2;
}
