#include "StereoSignals.h"

#include <gtest/gtest.h>

#include <cmath>

// After a burst the tail runs until an envelope falls below the threshold;
// from then on the output is exact zeros and the network stands still, so a
// later sound meets the same state however long the silence was.
TEST (QuorlaneCore, SilenceEndsInExactZerosAndFreezesTheNetwork)
{
    const int rate = 44100;
    auto first = makeCore (rate);
    auto second = makeCore (rate);

    Stereo tail = render (*first, noise (rate / 4));
    render (*second, noise (rate / 4));

    // Silences that differ by whole blocks keep the two framings in step.
    const Stereo out = render (*first, silence (32 * 27000));
    const auto lastSound = std::find_if (out.left.rbegin(), out.left.rend(), [] (float x) { return x != 0.0f; });
    const int silentFrom = (int) (out.left.rend() - lastSound);
    ASSERT_LT (silentFrom, 32 * 17000);
    EXPECT_GT (silentFrom, rate);
    EXPECT_TRUE (std::all_of (out.right.begin() + silentFrom + 32, out.right.end(), [] (float x) { return x == 0.0f; }));

    render (*second, silence (32 * 19000));

    const Stereo burst = noise (rate / 2, 7);
    const Stereo a = render (*first, burst);
    const Stereo b = render (*second, burst);
    EXPECT_EQ (a.left, b.left);
    EXPECT_EQ (a.right, b.right);
}

TEST (QuorlaneCore, DecayEstimateAtSeveralSettings)
{
    using namespace QuorlaneMapping;
    auto values = defaultValues;
    const auto estimate = [&values] (double sampleRate = 44100.0) { return QuorlaneCore::estimateDecaySeconds (values, sampleRate); };

    EXPECT_NEAR (estimate(), 4.434799370291973, 1e-9);
    EXPECT_NEAR (estimate (48000.0), 4.826992511882419, 1e-9);

    values[crossFade] = 0.0;        // early network only
    EXPECT_NEAR (estimate(), 0.6788225099427148, 1e-9);

    values[crossFade] = 0.5;
    values[lateFeedback] = 0.0;     // no recirculation
    EXPECT_NEAR (estimate(), 2.6264739707928353, 1e-9);

    values[lateFeedback] = 1.0;
    values[predelay] = 1.0;
    values[lateSize] = 1.0;
    EXPECT_NEAR (estimate(), 406.4987609271337, 1e-6);
}

// Every rate from 22050 to 192000 Hz, at the ends of every knob, gives finite
// output without subnormal numbers, through sound and the tail after it; and
// (in debug builds) never asks an element for more delay than its buffer
// holds.
TEST (QuorlaneCore, CleanOutputAtEverySampleRate)
{
    for (double rate : { 22050.0, 44100.0, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0 })
    {
        for (float setting : { 0.0f, 1.0f })
        {
            QuorlaneCore core;

            for (std::uint32_t i = 0; i < QuorlaneMapping::parameterCount; ++i)
                core.postParameter (i, setting);

            core.prepare (rate, 512);
            core.postQuality (3);

            Stereo in = noise ((int) rate / 4);
            in.left.resize ((size_t) rate / 2);   // and silence after it
            in.right.resize ((size_t) rate / 2);
            const Stereo out = render (core, in);

            for (const auto* channel : { &out.left, &out.right })
                for (float x : *channel)
                    ASSERT_TRUE (std::isfinite (x) && std::fpclassify (x) != FP_SUBNORMAL) << rate << " " << setting;

            // At the longest predelay the reverb stays silent for its 300 ms, however high the rate.
            const auto heard = std::find_if (out.left.begin(), out.left.end(), [] (float x) { return std::abs (x) > 1e-6f; });
            EXPECT_TRUE (setting == 0.0f || (double) (heard - out.left.begin()) >= 0.3 * rate) << rate;
        }
    }
}

// Qualities above three (each one below is RecordedOutput's), parameter indices from
// twenty and an empty call (which only republishes the meters) change nothing played.
TEST (QuorlaneCore, OutOfRangeControlAndEmptyCallsChangeNothing)
{
    const Stereo in = noise (10000);
    auto a = makeCore (48000.0, 2);
    auto b = makeCore (48000.0, 2);
    render (*a, in);
    render (*b, in);

    for (std::uint32_t index : { 20u, 21u, 110000u })
        a->postParameter (index, 0.9f);

    a->postQuality (4);
    a->requestMeters();
    float left = -1.0f, right = -1.0f;
    EXPECT_FALSE (a->takeMeters (left, right));
    a->process (nullptr, nullptr, 0);
    ASSERT_TRUE (a->takeMeters (left, right));
    EXPECT_GT (left, 0.0f);
    EXPECT_GT (right, 0.0f);
    EXPECT_EQ (render (*a, in, { 100 }).left, render (*b, in, { 100 }).left);
}
