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

enum class Place { start, middle, longRun };

// Where the bad samples go; returns the index after the last one.
int spoil (Stereo& s, Place place, bool bothChannels, float value)
{
    const int first = place == Place::start ? 0 : length / 3;
    const int count = place == Place::start ? 10 : place == Place::middle ? 1 : (int) rate / 2;

    for (int i = first; i < first + count; ++i)
    {
        s.left[(size_t) i] = value;

        if (bothChannels)
            s.right[(size_t) i] = value;
    }

    return first + count;
}

double rms (const std::vector<float>& x, int from, int count)
{
    double sum = 0.0;

    for (int i = from; i < from + count; ++i)
        sum += (double) x[(size_t) i] * x[(size_t) i];

    return std::sqrt (sum / count);
}

bool allFinite (const Stereo& s)
{
    return std::all_of (s.left.begin(), s.left.end(), [] (float x) { return std::isfinite (x); })
        && std::all_of (s.right.begin(), s.right.end(), [] (float x) { return std::isfinite (x); });
}
}

// Every placement and value at every quality: the output stays finite, even
// where a huge input would overflow the float range, and one second after
// NaN or infinity the level is that of the same input with zeros there.
TEST (HostileSignal, OutputStaysFiniteAndRecovers)
{
    const Stereo clean = noise (length);

    for (unsigned quality = 0; quality < 4; ++quality)
    {
        for (const float hostile : hostileSamples)
        {
            for (auto [place, both] : { std::pair (Place::start, false), { Place::middle, true }, { Place::longRun, true } })
            {
                Stereo in = clean, zeroed = clean;
                const int end = spoil (in, place, both, hostile);
                spoil (zeroed, place, both, 0.0f);

                auto core = makeCore (rate, quality);
                core->postParameter (QuorlaneMapping::wetGain, 1.0f);
                const Stereo out = render (*core, in, { 64, 1024, 33 });
                const auto context = std::to_string (hostile) + " quality " + std::to_string (quality)
                                   + " at " + std::to_string (end);
                ASSERT_TRUE (allFinite (out)) << context;

                if (std::isfinite (hostile))
                    continue;

                auto reference = makeCore (rate, quality);
                reference->postParameter (QuorlaneMapping::wetGain, 1.0f);
                const Stereo expected = render (*reference, zeroed, { 64, 1024, 33 });
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
