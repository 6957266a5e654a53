#include "engine/BiquadFilter.h"

#include <gtest/gtest.h>

#include <cmath>

// Close to the Nyquist frequency at a low rate the octave bandwidth would
// overflow the coefficients.
TEST (BiquadFilter, StaysFiniteAtTheTopOfTheRange)
{
    BiquadTuning tuning (22050.0, 24.0, 4.0);
    tuning.prepare (22050.0, 22049.9, 24.0, 4.0);
    const auto& c = tuning.getCoefficients();

    for (double v : { c.b0, c.b1, c.b2, c.a1, c.a2 })
        EXPECT_TRUE (std::isfinite (v));
}
