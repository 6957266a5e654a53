#include "engine/BiquadFilter.h"
#include "engine/StereoBiquadFilter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{
constexpr double pi = 3.141592653589793;

// Steady-state gain in dB of the filter for a sine of the given frequency.
double gainAt (double hz, double sampleRate, double centre, double gainDb, double octaves)
{
    BiquadFilter filter (centre, gainDb, octaves);
    filter.getTuning().prepare (sampleRate, centre, gainDb, octaves);

    double peak = 0.0;
    const int blocks = (int) sampleRate / 32;

    for (int b = 0; b < blocks; ++b)
    {
        double io[32];

        for (int n = 0; n < 32; ++n)
            io[n] = std::sin (2.0 * pi * hz * (b * 32 + n) / sampleRate);

        filter.process (io);

        if (b > blocks / 2)
            for (double y : io)
                peak = std::max (peak, std::abs (y));
    }

    return 20.0 * std::log10 (peak);
}
}

// The filter runs against twice the sample rate, so its peak sits an octave
// below the nominal frequency.
TEST (BiquadFilter, PeakAnOctaveBelowNominalFrequency)
{
    for (double sampleRate : { 44100.0, 96000.0 })
    {
        EXPECT_NEAR (gainAt (2000.0, sampleRate, 4000.0, 12.0, 1.0), 12.0, 0.05);
        EXPECT_NEAR (gainAt (1000.0, sampleRate, 2000.0, -12.0, 1.0), -12.0, 0.05);
        EXPECT_NEAR (gainAt (30.0, sampleRate, 4000.0, 12.0, 1.0), 0.0, 0.05);
        EXPECT_LT (gainAt (4000.0, sampleRate, 4000.0, 12.0, 1.0), 9.0);
    }

    EXPECT_NEAR (gainAt (5000.0, 48000.0, 3000.0, 0.0, 2.0), 0.0, 1e-6);
}

// The recorded output holds the stereo filters through swept EQ knobs; the
// mono render's filters must give exactly the same output, gliding too.
TEST (BiquadFilter, MonoMatchesStereoWhileGliding)
{
    BiquadFilter mono (800.0, 6.0, 1.5);
    StereoBiquadFilter stereo (800.0, 6.0, 1.5);

    for (BiquadTuning* t : { &mono.getTuning(), &stereo.getTuning() })
    {
        t->prepare (44100.0, 800.0, 6.0, 1.5);
        t->setFrequency (3000.0);
    }

    for (int b = 0; b < 100; ++b)
    {
        double m[32], l[32], r[32];

        for (int n = 0; n < 32; ++n)
            m[n] = l[n] = r[n] = std::sin (0.01 * (b * 32 + n)) * std::cos (0.37 * n);

        mono.process (m);
        stereo.process (l, r);

        for (int n = 0; n < 32; ++n)
        {
            ASSERT_EQ (l[n], m[n]) << b;
            ASSERT_EQ (r[n], m[n]) << b;
        }
    }
}

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
