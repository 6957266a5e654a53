#include "DecayMeasurement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace
{
    constexpr double sampleRate = 48000.0;

    // Noise under an envelope that falls 60 dB every t60 seconds: an ideal
    // diffuse decay with a known reverberation time.
    std::vector<float> exponentialDecay (double t60, double seconds, float level = 1.0f, unsigned seed = 1)
    {
        std::mt19937 random (seed);
        std::normal_distribution<float> noise (0.0f, 0.3f);
        std::vector<float> out ((size_t) (seconds * sampleRate));
        const double nepersPerSample = std::log (1000.0) / (t60 * sampleRate);

        for (size_t i = 0; i < out.size(); ++i)
            out[i] = level * noise (random) * (float) std::exp (-nepersPerSample * (double) i);

        return out;
    }

    DecayTimes measure (const std::vector<float>& response)
    {
        return measureDecayTimes (response.data(), (int) response.size(), sampleRate);
    }
}

// Silence before the onset does not count as decay, and a response cut off
// mid-decay (where the level is 36 dB down, as the plug-in's gate or a length
// limit would) measures as if it had gone on: uncorrected, the curve's plunge
// at the end would shorten T30 by 5 %. Each time fits its own part of a
// double-slope decay; a response without a decay gives none.
TEST (DecayMeasurement, RecoversReverberationTimesAndFindsNoneWithoutADecay)
{
    const struct { double t60, leadingSilence, length; } cases[] = { { 0.5, 0.0, 1.5 }, { 2.0, 0.0, 1.5 }, { 1.0, 0.25, 1.5 }, { 2.0, 0.0, 0.6 } };

    for (const auto& [t60, leadingSilence, length] : cases)
    {
        SCOPED_TRACE (testing::Message() << t60 << " s after " << leadingSilence << " s of silence, cut after " << length << " T60");
        auto response = std::vector<float> ((size_t) (leadingSilence * sampleRate), 0.0f);
        const auto decay = exponentialDecay (t60, length * t60);
        response.insert (response.end(), decay.begin(), decay.end());
        const auto times = measure (response);

        ASSERT_TRUE (times.edt.has_value() && times.t20.has_value() && times.t30.has_value());
        EXPECT_NEAR (*times.edt, t60, 0.05 * t60);
        EXPECT_NEAR (*times.t20, t60, 0.03 * t60);
        EXPECT_NEAR (*times.t30, t60, 0.03 * t60);
    }

    // The curve is relative to the total energy and never rises: half a
    // second of a 1 s decay leaves 30 dB less energy.
    const auto decay = exponentialDecay (1.0, 1.0);
    const auto curve = energyDecayCurve (decay.data(), (int) decay.size(), sampleRate);
    ASSERT_EQ (curve.size(), decay.size());
    EXPECT_NEAR (curve.front(), 0.0, 1e-9);

    for (size_t i = 1; i < curve.size(); ++i)
        ASSERT_LE (curve[i], curve[i - 1]) << "at sample " << i;

    EXPECT_NEAR (curve[(size_t) (0.5 * sampleRate)], -30.0, 1.0);

    // A loud short decay over a quiet long one: the early decay follows the
    // first, the later ranges more and more the second.
    auto doubleSlope = exponentialDecay (0.3, 4.0);
    const auto slow = exponentialDecay (3.0, 4.0, 0.03f, 2);
    for (size_t i = 0; i < doubleSlope.size(); ++i)
        doubleSlope[i] += slow[i];

    const auto times = measure (doubleSlope);
    ASSERT_TRUE (times.edt.has_value() && times.t20.has_value() && times.t30.has_value());
    EXPECT_NEAR (*times.edt, 0.3, 0.05);
    EXPECT_GT (*times.t20, *times.edt * 1.5);
    EXPECT_GT (*times.t30, *times.t20);

    // Silence, or a lone click, has no decay to measure.
    std::vector<float> silence (48000, 0.0f), click = silence;
    click[100] = 1.0f;
    for (const auto& response : { silence, click })
        EXPECT_FALSE (measure (response).edt || measure (response).t20 || measure (response).t30);
    EXPECT_TRUE (energyDecayCurve (silence.data(), (int) silence.size(), sampleRate).empty());
}
