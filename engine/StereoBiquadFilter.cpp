#include "engine/StereoBiquadFilter.h"

namespace
{
using Pair = double __attribute__ ((vector_size (16)));
}

void StereoBiquadFilter::process (double* left, double* right) noexcept
{
    const bool gliding = tuning.isGliding();
    Pair s1 { state1[0], state1[1] }, s2 { state2[0], state2[1] };

    // Held in registers unless a glide changes them during the block.
    auto c = tuning.getCoefficients();

    for (int n = 0; n < blockSize; ++n)
    {
        if (gliding)
        {
            tuning.advance();
            c = tuning.getCoefficients();
        }

        // Transposed direct form II, the same arithmetic as BiquadFilter.
        const Pair x { left[n], right[n] };
        const Pair y = c.b0 * x + s1;
        s1 = ((c.b1 * x + 1e-20) + s2) - c.a1 * y;
        s2 = (c.b2 * x + 1e-20) - c.a2 * y;
        left[n] = y[0];
        right[n] = y[1];
    }

    state1[0] = s1[0]; state1[1] = s1[1];
    state2[0] = s2[0]; state2[1] = s2[1];
}
