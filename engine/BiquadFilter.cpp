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

        // Transposed direct form II.
        const double x = io[n];
        const double y = c.b0 * x + s1;
        s1 = c.b1 * x - c.a1 * y + s2 + 1e-20;
        s2 = c.b2 * x - c.a2 * y + 1e-20;
        io[n] = y;
    }

    state1 = s1;
    state2 = s2;
}
