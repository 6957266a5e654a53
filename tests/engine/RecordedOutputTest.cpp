// The engine's output against a recording of it, so that work on its speed
// cannot change its sound: every 1999th output sample of noise, impulse,
// swept, preset-fade, mono and dry renders stays within 1e-7 of
// RecordedOutput.txt, from the fastest inner loops this processor runs and
// from the portable ones. Record again only when the sound is meant to
// change: run this suite with QUORLANE_RECORD_OUTPUT set to the recording's path.
#include "engine/DelayKernels.h"
#include "engine/QuorlaneCore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace
{
constexpr int hostBlock = 512, second = 48000 / hostBlock;
using Hook = std::function<void (QuorlaneCore&, int block)>;

struct Recorder
{
    QuorlaneCore::Instructions instructions;
    std::vector<float> kept {};
    size_t counter = 0;
    std::vector<int> pieces { hostBlock }; // of each host block

    std::unique_ptr<QuorlaneCore> core (unsigned quality, double rate = 48000.0, float dryWet = 1.0f)
    {
        auto core = std::make_unique<QuorlaneCore> (instructions);
        core->postParameter (QuorlaneMapping::modulation, 1.0f);
        core->postParameter (QuorlaneMapping::dryWet, dryWet);
        core->prepare (rate, hostBlock);
        core->postQuality (quality);
        return core;
    }

    // Full-scale noise from a generator that is the same on every platform
    // (an impulse when the seed is 0); stereo output is kept interleaved.
    void render (QuorlaneCore& core, int blocks, std::uint32_t seed, bool mono = false, const Hook& hook = {})
    {
        std::vector<float> left (hostBlock), right (hostBlock);
        const auto noise = [&seed]
        {
            seed = seed * 1664525u + 1013904223u;
            return (float) (seed >> 8) / 8388608.0f - 1.0f;
        };
        const bool impulse = seed == 0;

        for (int b = 0; b < blocks; ++b)
        {
            if (hook)
                hook (core, b);

            for (int i = 0; i < hostBlock; ++i)
            {
                left[(size_t) i] = impulse ? (b == 0 && i == 0 ? 1.0f : 0.0f) : noise();
                right[(size_t) i] = impulse ? (b == 0 && i == 3 ? -0.5f : 0.0f) : noise();
            }

            // In place, as hosts often call it, in the host's pieces.
            for (size_t piece = 0, done = 0; done < (size_t) hostBlock; done += (size_t) pieces[piece++])
            {
                float* channels[] = { left.data() + done, right.data() + done };
                const float* inputs[] = { channels[0], channels[1] };

                if (mono)
                    core.processMono (channels, pieces[piece]);
                else
                    core.process (inputs, channels, pieces[piece]);
            }

            for (size_t i = 0; i < (size_t) hostBlock; ++i)
                for (const auto* channel : { &left, &right })
                    if ((channel == &left || ! mono) && counter++ % 1999 == 0)
                        kept.push_back ((*channel)[i]);
        }
    }
};

// Every parameter moves along its own slow triangle; the output level stays
// moderate, so that the comparison stays absolute.
void sweepParameters (QuorlaneCore& core, int block)
{
    for (std::uint32_t i = 0; i < QuorlaneMapping::parameterCount; ++i)
    {
        const int period = 40 + 13 * (int) i, phase = (block + 7 * (int) i) % (2 * period);
        const float triangle = (float) (phase < period ? phase : 2 * period - phase) / (float) period;
        core.postParameter (i, i == QuorlaneMapping::outputVolume ? 0.3f + 0.2f * triangle
                             : i == QuorlaneMapping::wetGain      ? 0.2f * triangle
                                                                  : triangle);
    }
}

// A preset change that lands on quite different settings.
struct PresetSwap : CorvelleEffectCore::PresetChangeTarget
{
    explicit PresetSwap (QuorlaneCore& c) : core (c) { core.setPresetChangeTarget (this); }

    void applyPendingPresetChange() override
    {
        for (std::uint32_t i = 0; i < QuorlaneMapping::parameterCount; ++i)
            core.postParameter (i, (float) ((i * 37) % 11) / 10.0f);

        core.postParameter (QuorlaneMapping::outputVolume, 0.5f);
    }

    QuorlaneCore& core;
};

void changePresets (QuorlaneCore& core, int block)
{
    if (block % 100 == 20)
        core.postPresetChange();
}

std::vector<float> renderAll (QuorlaneCore::Instructions instructions)
{
    Recorder r { instructions };

    for (unsigned quality = 0; quality <= 3; ++quality)
    {
        r.render (*r.core (quality), 10 * second, quality + 1);
        r.render (*r.core (quality), 3 * second, 0);
        r.render (*r.core (quality), 4 * second, quality + 11, false, sweepParameters);
    }

    for (unsigned quality : { 1u, 3u })
    {
        auto core = r.core (quality);
        PresetSwap swap (*core);
        r.render (*core, 3 * second, quality + 21, false, changePresets);
    }

    r.render (*r.core (2), 3 * second, 31, true);

    // At 44.1 kHz, where the filters, delays and fade follow the rate, in
    // host pieces that split the engine's 32-sample blocks every way: swept
    // with preset changes, in stereo and in mono (whose filters glide alike);
    // then fully dry at the top volume, the input four times louder one
    // engine block late.
    r.pieces = { 1, 31, 7, 64, 200, 33, 176 };

    for (const bool mono : { false, true })
    {
        auto core = r.core (3, 44100.0);
        PresetSwap swap (*core);
        r.render (*core, 3 * second, 41u + mono, mono, [] (QuorlaneCore& c, int b) { sweepParameters (c, b); changePresets (c, b); });

        auto dry = r.core (0, 44100.0, 0.0f);
        dry->postParameter (QuorlaneMapping::outputVolume, 1.0f);
        r.render (*dry, second, 51u + mono, mono);
    }

    return r.kept;
}
}

TEST (RecordedOutput, NoiseImpulseSweepsFadesAndMonoKeepTheirSound)
{
    using Instructions = QuorlaneCore::Instructions;

    if (const char* path = std::getenv ("QUORLANE_RECORD_OUTPUT"))
    {
        const auto kept = renderAll (Instructions::best);
        FILE* file = std::fopen (path, "w");
        ASSERT_NE (file, nullptr) << path;

        // Six a line, in the nine digits that give back the same float.
        for (size_t i = 0; i < kept.size(); ++i)
            std::fprintf (file, "%.9g%s", (double) kept[i], i % 6 == 5 || i + 1 == kept.size() ? "\n" : " ");

        std::fclose (file);
        GTEST_SKIP() << "recorded " << kept.size() << " samples to " << path;
    }

    // Where the processor has AVX2 and FMA (Wine passes them through), the
    // fastest instructions are those kernels, not the portable ones twice.
#if defined(__x86_64__)
    const bool avx2 = __builtin_cpu_supports ("avx2") && __builtin_cpu_supports ("fma");
    EXPECT_TRUE (! avx2 || (DelayKernels::best().plan != DelayKernels::portable().plan
                            && DelayKernels::best().interpolate != DelayKernels::portable().interpolate));
#endif

    std::vector<float> recorded;

    if (FILE* file = std::fopen (QUORLANE_RECORDING, "r"))
    {
        for (float sample; std::fscanf (file, "%f", &sample) == 1;)
            recorded.push_back (sample);

        std::fclose (file);
    }

    for (Instructions instructions : { Instructions::best, Instructions::portable })
    {
        SCOPED_TRACE (instructions == Instructions::best ? "the fastest instructions" : "the portable instructions");
        const auto kept = renderAll (instructions);
        ASSERT_EQ (kept.size(), recorded.size()) << QUORLANE_RECORDING;
        const auto difference = [&] (size_t i) { return std::abs ((double) kept[i] - (double) recorded[i]); };
        size_t worst = 0;

        for (size_t i = 1; i < kept.size(); ++i)
            if (difference (i) > difference (worst))
                worst = i;

        EXPECT_LE (difference (worst), 1e-7) << "at kept sample " << worst;
    }
}
