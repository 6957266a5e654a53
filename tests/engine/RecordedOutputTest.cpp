// The engine's output against a recording of it, so that work on its speed
// cannot change its sound. Every 1999th output sample of a set of renders is
// kept in RecordedOutput.txt; they must stay within 1e-7, from the fastest
// build of the inner loops that this processor runs and from the portable one
// (which processors without AVX2 run).
//
// The recording was made with the engine of commit 967df6a. To record again
// (only when the sound is meant to change), run this suite with
// QUORLANE_RECORD_OUTPUT set to the recording's path.

#include "engine/QuorlaneCore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace
{
constexpr double sampleRate = 48000.0;
constexpr int hostBlock = 512;
constexpr size_t stride = 1999;

// Full-scale noise from a fixed generator, the same on every platform.
class Noise
{
public:
    explicit Noise (std::uint32_t seed) : state (seed) {}

    float next() noexcept
    {
        state = state * 1664525u + 1013904223u;
        return (float) (state >> 8) / 8388608.0f - 1.0f;
    }

private:
    std::uint32_t state;
};

// What a render feeds in and changes along the way, per host block.
using BlockHook = std::function<void (QuorlaneCore&, int block)>;

struct Recorder
{
    std::vector<float> kept;
    size_t counter = 0;

    void take (const float* samples, int count)
    {
        for (int i = 0; i < count; ++i, ++counter)
            if (counter % stride == 0)
                kept.push_back (samples[i]);
    }

    // Stereo: the channels take turns in the count, so both are sampled.
    void render (QuorlaneCore& core, int blocks, const std::function<void (float*, float*)>& input, const BlockHook& hook = {})
    {
        std::vector<float> left (hostBlock), right (hostBlock), interleaved (2 * hostBlock);

        for (int b = 0; b < blocks; ++b)
        {
            if (hook)
                hook (core, b);

            input (left.data(), right.data());
            const float* in[] = { left.data(), right.data() };
            float* out[] = { left.data(), right.data() };
            core.process (in, out, hostBlock);

            for (int i = 0; i < hostBlock; ++i)
            {
                interleaved[2 * (size_t) i] = left[(size_t) i];
                interleaved[2 * (size_t) i + 1] = right[(size_t) i];
            }

            take (interleaved.data(), 2 * hostBlock);
        }
    }
};

std::function<void (float*, float*)> noiseInput (std::uint32_t seed)
{
    return [noise = Noise (seed)] (float* left, float* right) mutable
    {
        for (int i = 0; i < hostBlock; ++i)
        {
            left[i] = noise.next();
            right[i] = noise.next();
        }
    };
}

std::function<void (float*, float*)> impulseInput()
{
    return [first = true] (float* left, float* right) mutable
    {
        std::fill_n (left, hostBlock, 0.0f);
        std::fill_n (right, hostBlock, 0.0f);
        left[0] = first ? 1.0f : 0.0f;
        right[3] = first ? -0.5f : 0.0f;
        first = false;
    };
}

std::unique_ptr<QuorlaneCore> modulatedCore (unsigned quality, QuorlaneCore::Instructions instructions)
{
    auto core = std::make_unique<QuorlaneCore> (instructions);
    core->postParameter (QuorlaneMapping::modulation, 1.0f);
    core->postParameter (QuorlaneMapping::dryWet, 1.0f);
    core->prepare (sampleRate, hostBlock);
    core->postQuality (quality);
    return core;
}

// Every parameter moves along its own slow triangle while noise plays.
void sweepParameters (QuorlaneCore& core, int block)
{
    for (std::uint32_t i = 0; i < QuorlaneMapping::parameterCount; ++i)
    {
        const int period = 40 + 13 * (int) i;
        const int phase = (block + 7 * (int) i) % (2 * period);
        const float triangle = (float) (phase < period ? phase : 2 * period - phase) / (float) period;

        // The output level stays moderate, so the comparison stays absolute.
        const float value = i == QuorlaneMapping::outputVolume ? 0.3f + 0.2f * triangle
                          : i == QuorlaneMapping::wetGain ? 0.2f * triangle
                          : triangle;
        core.postParameter (i, value);
    }
}

// A preset change that lands on quite different settings.
struct PresetSwap : CorvelleEffectCore::PresetChangeTarget
{
    QuorlaneCore* core = nullptr;

    void applyPendingPresetChange() override
    {
        for (std::uint32_t i = 0; i < QuorlaneMapping::parameterCount; ++i)
            core->postParameter (i, (float) ((i * 37) % 11) / 10.0f);

        core->postParameter (QuorlaneMapping::outputVolume, 0.5f);
    }
};

std::vector<float> renderAll (QuorlaneCore::Instructions instructions)
{
    Recorder recorder;
    const int second = (int) sampleRate / hostBlock;

    for (unsigned quality = 0; quality <= 3; ++quality)
    {
        recorder.render (*modulatedCore (quality, instructions), 10 * second, noiseInput (quality + 1));
        recorder.render (*modulatedCore (quality, instructions), 3 * second, impulseInput());

        auto swept = modulatedCore (quality, instructions);
        recorder.render (*swept, 4 * second, noiseInput (quality + 11), sweepParameters);
    }

    for (unsigned quality : { 1u, 3u })
    {
        auto core = modulatedCore (quality, instructions);
        PresetSwap swap;
        swap.core = core.get();
        core->setPresetChangeTarget (&swap);
        recorder.render (*core, 3 * second, noiseInput (quality + 21),
                         [] (QuorlaneCore& c, int block) { if (block % 100 == 20) c.postPresetChange(); });
    }

    // The mono path through the left half of the network.
    auto mono = modulatedCore (2, instructions);
    auto noise = noiseInput (31);
    std::vector<float> left (hostBlock), right (hostBlock);

    for (int b = 0; b < 3 * second; ++b)
    {
        noise (left.data(), right.data());
        float* channels[] = { left.data() };
        mono->processMono (channels, hostBlock);
        recorder.take (left.data(), hostBlock);
    }

    return recorder.kept;
}

// Six samples a line, each in the nine digits that give back the same float.
void record (const char* path, const std::vector<float>& kept)
{
    FILE* file = std::fopen (path, "w");
    ASSERT_NE (file, nullptr) << path;

    for (size_t i = 0; i < kept.size(); ++i)
        std::fprintf (file, "%.9g%s", (double) kept[i], i % 6 == 5 || i + 1 == kept.size() ? "\n" : " ");

    std::fclose (file);
}

std::vector<float> recording()
{
    std::vector<float> samples;
    FILE* file = std::fopen (QUORLANE_RECORDING, "r");

    if (file == nullptr)
        return samples;

    for (float sample; std::fscanf (file, "%f", &sample) == 1;)
        samples.push_back (sample);

    std::fclose (file);
    return samples;
}
}

TEST (RecordedOutput, NoiseImpulseSweepsFadesAndMonoKeepTheirSound)
{
    using Instructions = QuorlaneCore::Instructions;

    if (const char* path = std::getenv ("QUORLANE_RECORD_OUTPUT"))
    {
        const std::vector<float> kept = renderAll (Instructions::best);
        record (path, kept);
        GTEST_SKIP() << "recorded " << kept.size() << " samples to " << path;
    }

    const std::vector<float> recordedOutput = recording();

    for (Instructions instructions : { Instructions::best, Instructions::portable })
    {
        SCOPED_TRACE (instructions == Instructions::best ? "the fastest instructions" : "the portable instructions");
        const std::vector<float> kept = renderAll (instructions);
        ASSERT_EQ (kept.size(), recordedOutput.size()) << QUORLANE_RECORDING;
        double largest = 0.0;
        size_t where = 0;

        for (size_t i = 0; i < kept.size(); ++i)
        {
            const double difference = std::abs ((double) kept[i] - (double) recordedOutput[i]);

            if (difference > largest)
            {
                largest = difference;
                where = i;
            }
        }

        EXPECT_LE (largest, 1e-7) << "at kept sample " << where;
    }
}
