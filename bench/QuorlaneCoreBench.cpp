// Cost of the reverb core, as CPU seconds per second of stereo audio (the
// counter "cpu_per_audio_s"), for each quality, sample rate, host block size
// and for noise or silence after noise at the input.

#include "engine/QuorlaneCore.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace
{
enum class Input { noise, silence };

void renderCore (benchmark::State& state, Input input)
{
    const auto quality = (unsigned) state.range (0);
    const auto sampleRate = (double) state.range (1);
    const auto blockSize = (int) state.range (2);

    QuorlaneCore core;
    core.prepare (sampleRate, blockSize);
    core.setQuality (quality);

    std::vector<float> left ((size_t) blockSize), right ((size_t) blockSize);
    std::vector<float> outLeft ((size_t) blockSize), outRight ((size_t) blockSize);
    const float* inputs[] = { left.data(), right.data() };
    float* outputs[] = { outLeft.data(), outRight.data() };

    std::mt19937 random (1);
    std::uniform_real_distribution<float> noise (-0.5f, 0.5f);

    auto fill = [&]
    {
        for (int i = 0; i < blockSize; ++i)
        {
            left[(size_t) i] = noise (random);
            right[(size_t) i] = noise (random);
        }
    };

    // Half a second of sound first, so that silence meets a live tail.
    for (int done = 0; done < (int) sampleRate / 2; done += blockSize)
    {
        fill();
        core.process (inputs, outputs, blockSize);
    }

    if (input == Input::silence)
    {
        std::fill (left.begin(), left.end(), 0.0f);
        std::fill (right.begin(), right.end(), 0.0f);
    }

    for (auto _ : state)
    {
        if (input == Input::noise)
        {
            state.PauseTiming();
            fill();
            state.ResumeTiming();
        }

        core.process (inputs, outputs, blockSize);
        benchmark::DoNotOptimize (outLeft.data());
        benchmark::ClobberMemory();
    }

    state.counters["cpu_per_audio_s"] = benchmark::Counter (
        (double) state.iterations() * blockSize / sampleRate, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void arguments (benchmark::internal::Benchmark* b)
{
    b->ArgNames ({ "quality", "rate", "block" });

    for (int quality = 0; quality <= 3; ++quality)
        for (int rate : { 44100, 48000, 96000 })
            for (int block : { 64, 512 })
                b->Args ({ quality, rate, block });

    b->MinTime (0.05);
}

void noise (benchmark::State& state)   { renderCore (state, Input::noise); }
void silence (benchmark::State& state) { renderCore (state, Input::silence); }
}

BENCHMARK (noise)->Apply (arguments);
BENCHMARK (silence)->Apply (arguments);

BENCHMARK_MAIN();
