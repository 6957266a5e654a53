// Hostile input: the reverb must keep producing finite output and recover as
// if the bad samples were silence.

#include "StereoSignals.h"
#include "tests/support/HostileSamples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace
{
constexpr double rate = 48000.0;
constexpr int length = 3 * 48000;

double rms (const std::vector<float>& x, int from, int count)
{
    double sum = 0.0;
    for (int i = from; i < from + count; ++i)
        sum += (double) x[(size_t) i] * x[(size_t) i];
    return std::sqrt (sum / count);
}
}

// Every placement and value at every quality: the output stays finite, even
// where a huge input would overflow the float range, and one second after
// NaN or infinity the level is that of the same input with zeros there.
TEST (HostileSignal, OutputStaysFiniteAndRecovers)
{
    const Stereo clean = noise (length);
    const struct { int first, count; bool both; } places[] = { { 0, 10, false }, { length / 3, 1, true }, { length / 3, (int) rate / 2, true } };

    for (unsigned quality = 0; quality < 4; ++quality)
    {
        const auto play = [quality] (const Stereo& in)
        {
            auto core = makeCore (rate, quality);
            core->postParameter (QuorlaneMapping::wetGain, 1.0f);
            return render (*core, in, { 64, 1024, 33 });
        };

        for (const float hostile : hostileSamples)
        {
            for (const auto& place : places)
            {
                Stereo in = clean, zeroed = clean;
                const int end = place.first + place.count;

                for (auto channel : { &Stereo::left, &Stereo::right })
                    for (int i = place.first; i < end && (place.both || channel == &Stereo::left); ++i)
                        (in.*channel)[(size_t) i] = hostile, (zeroed.*channel)[(size_t) i] = 0.0f;

                const Stereo out = play (in);
                const auto context = std::to_string (hostile) + " quality " + std::to_string (quality) + " at " + std::to_string (end);

                for (const auto* channel : { &out.left, &out.right })
                    ASSERT_TRUE (std::all_of (channel->begin(), channel->end(), [] (float x) { return std::isfinite (x); })) << context;

                if (std::isfinite (hostile))
                    continue;

                const Stereo expected = play (zeroed);
                const int from = end + (int) rate, window = (int) rate / 4;

                for (auto channel : { &Stereo::left, &Stereo::right })
                {
                    const double level = rms (out.*channel, from, window), wanted = rms (expected.*channel, from, window);
                    ASSERT_GT (wanted, 0.0) << context;
                    EXPECT_LT (std::abs (20.0 * std::log10 (level / wanted)), 3.0) << context;
                }
            }
        }
    }
}

// After a reset the core sounds as a freshly prepared one: nothing of the
// earlier signal is left in the network, its filters or its gate.
TEST (HostileSignal, ResetForgetsTheSignal)
{
    const auto settle = [] (QuorlaneCore& core)
    {
        core.postParameter (QuorlaneMapping::modulation, 0.0f);
        core.postParameter (QuorlaneMapping::earlyEqGain, 1.0f);
        core.postParameter (QuorlaneMapping::lateEqGain, 0.0f);
        core.prepare (rate, 512);
    };

    Stereo impulse = silence (length / 3);
    impulse.left[0] = impulse.right[5] = 0.5f;

    QuorlaneCore fresh;
    settle (fresh);
    const Stereo expected = render (fresh, impulse);

    for (bool byPrepare : { false, true })
    {
        QuorlaneCore used;
        settle (used);
        render (used, noise (length / 3), { 100 });

        if (byPrepare)
            used.prepare (rate, 512);
        else
            used.reset();

        const Stereo out = render (used, impulse);

        for (size_t i = 0; i < out.left.size(); ++i)
        {
            ASSERT_NEAR (out.left[i], expected.left[i], 1e-6f) << i << (byPrepare ? " prepare" : " reset");
            ASSERT_NEAR (out.right[i], expected.right[i], 1e-6f) << i << (byPrepare ? " prepare" : " reset");
        }
    }
}
