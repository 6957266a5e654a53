#include "StereoSignals.h"
#include "engine/QuorlaneCore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

// With the mixer fully dry the output is the input, 32 samples late, stereo
// and mono; the volume's middle position is unity and its top four times.
TEST (QuorlaneCore, LatencyIsOneBlockAndVolumeScale)
{
    for (float volume : { 0.5f, 1.0f })
    {
        QuorlaneCore core, mono;

        for (auto* c : { &core, &mono })
        {
            c->postParameter (QuorlaneMapping::dryWet, 0.0f);
            c->postParameter (QuorlaneMapping::outputVolume, volume);
            c->prepare (44100.0, 512);
            EXPECT_EQ (c->getLatency(), 32);
        }

        const Stereo in = noise (4000);
        const Stereo out = render (core, in, { 100 });
        std::vector<float> monoOut = in.left;
        float* channels[] = { monoOut.data() };
        mono.processMono (channels, 4000);
        const float gain = volume == 0.5f ? 1.0f : 4.0f;

        for (int i = 0; i < 4000; ++i)
        {
            const float expected = i < 32 ? 0.0f : gain * in.left[(size_t) i - 32];
            ASSERT_NEAR (out.left[(size_t) i], expected, 1e-12) << i;
            ASSERT_NEAR (monoOut[(size_t) i], expected, 1e-12) << i << " mono";
        }
    }
}

TEST (QuorlaneCore, SameOutputForAnyHostBlockSizeAndInPlace)
{
    const Stereo in = noise (48000);
    auto reference = makeCore (48000.0, 1);
    const Stereo expected = render (*reference, in, { 32 });

    for (std::vector<int> sizes : { std::vector<int> { 1 }, { 31 }, { 33 }, { 1000 }, { 7, 64, 1, 500, 32 } })
    {
        auto core = makeCore (48000.0, 1);
        const Stereo out = render (*core, in, sizes);
        EXPECT_EQ (out.left, expected.left) << "block " << sizes[0];
        EXPECT_EQ (out.right, expected.right) << "block " << sizes[0];
    }

    // In place, as hosts often call it.
    auto core = makeCore (48000.0, 1);
    Stereo io = in;

    for (size_t done = 0; done < 48000; done += 480)
    {
        float* channels[] = { io.left.data() + done, io.right.data() + done };
        core->process (channels, channels, 480);
    }

    EXPECT_EQ (io.left, expected.left);
    EXPECT_EQ (io.right, expected.right);
}

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
        }
    }
}

// Qualities above three, parameter indices from twenty and an empty call
// (which only republishes the meters) change nothing of what is played.
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

    a->postQuality (100);
    render (*a, in);
    EXPECT_EQ (a->getQuality(), 2u);
    a->postQuality (0);
    render (*a, in);
    EXPECT_EQ (a->getQuality(), 0u);
}

// A preset change mutes the output, applies the preset once at the quiet
// point, holds silence for 4000 samples at 44100 Hz (as long in time at any
// rate) and fades back in.
TEST (QuorlaneCore, PresetChangeFadesOutAppliesOnceAndReturns)
{
    struct Counter : CorvelleEffectCore::PresetChangeTarget
    {
        int calls = 0;
        void applyPendingPresetChange() override { ++calls; }
    };

    for (const auto& [rate, hold] : { std::pair { 44100.0, 4000 }, std::pair { 48000.0, 4353 } })
    {
        SCOPED_TRACE (rate);
        Counter counter;
        QuorlaneCore core;
        core.postParameter (QuorlaneMapping::dryWet, 0.0f);
        core.prepare (rate, 512);
        core.setPresetChangeTarget (&counter);

        Stereo dc { std::vector<float> (20000, 0.5f), std::vector<float> (20000, 0.5f) };
        render (core, dc);
        core.postPresetChange();
        const Stereo out = render (core, dc);

        EXPECT_EQ (counter.calls, 1);
        EXPECT_FALSE (core.isPresetFadeActive());

        const auto quiet = std::find_if (out.left.begin(), out.left.end(), [] (float x) { return x < 1e-6f; });
        ASSERT_NE (quiet, out.left.end());
        const auto back = std::find_if (quiet, out.left.end(), [] (float x) { return x >= 1e-6f; });
        EXPECT_NEAR (back - quiet, hold, 2);
        EXPECT_EQ (out.left.back(), 0.5f);
    }
}
