// Cost of the reverb core as CPU seconds per second of stereo audio (the
// counter "cpu_per_audio_s"), for each quality, sample rate and host block
// size, with three kinds of input: noise; silence while the tail of earlier
// noise still rings (it must not cost more than sound: no subnormal stalls);
// and silence after the tail has ended. Subnormal input (noise scaled down
// below the smallest normal float) must cost no more than noise.

#include "engine/QuorlaneCore.h"

#include <benchmark/benchmark.h>

#include <random>
#include <vector>

namespace
{
enum class Input { noise, subnormal, tail, gated };

class Renderer
{
public:
    Renderer (double sampleRate, int blockSize, unsigned quality, float scale = 1.0f)
        : blockSize (blockSize), noise ((size_t) sampleRate * 2), out ((size_t) blockSize * 2)
    {
        std::mt19937 random (1);
        std::uniform_real_distribution<float> dist (-0.5f, 0.5f);

        for (auto& x : noise)
            x = dist (random) * scale;

        core.prepare (sampleRate, blockSize);
        core.postQuality (quality);
    }

    // One host block of noise, or of silence.
    void render (bool sound)
    {
        const float* inputs[] = { sound ? noise.data() + position : silence.data(),
                                  sound ? noise.data() + noise.size() / 2 + position : silence.data() };
        float* outputs[] = { out.data(), out.data() + blockSize };
        core.process (inputs, outputs, blockSize);
        position = (position + (size_t) blockSize) % (noise.size() / 2 - (size_t) blockSize);
    }

    void renderSeconds (double seconds, bool sound, double sampleRate)
    {
        for (int done = 0; done < (int) (seconds * sampleRate); done += blockSize)
            render (sound);
    }

    const std::vector<float>& output() const { return out; }

private:
    QuorlaneCore core;
    int blockSize;
    std::vector<float> noise, out;
    std::vector<float> silence = std::vector<float> (8192);
    size_t position = 0;
};

void renderCore (benchmark::State& state, Input input)
{
    const auto quality = (unsigned) state.range (0);
    const auto sampleRate = (double) state.range (1);
    const auto blockSize = (int) state.range (2);

    Renderer renderer (sampleRate, blockSize, quality, input == Input::subnormal ? 1e-39f : 1.0f);
    renderer.renderSeconds (1.0, true, sampleRate);

    if (input == Input::gated)
        renderer.renderSeconds (30.0, false, sampleRate);

    const int blocksPerTail = (int) (2.0 * sampleRate) / blockSize;
    int blocks = 0;

    for (auto _ : state)
    {
        // The tail is measured for two seconds after each half second of sound.
        if (input == Input::tail && ++blocks % blocksPerTail == 0)
        {
            state.PauseTiming();
            renderer.renderSeconds (0.5, true, sampleRate);
            state.ResumeTiming();
        }

        renderer.render (input == Input::noise || input == Input::subnormal);
        benchmark::DoNotOptimize (renderer.output().data());
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

    b->MinTime (0.1);
}

void noise (benchmark::State& state)  { renderCore (state, Input::noise); }
void subnormal (benchmark::State& state) { renderCore (state, Input::subnormal); }
void tail (benchmark::State& state)   { renderCore (state, Input::tail); }
void gated (benchmark::State& state)  { renderCore (state, Input::gated); }
}

BENCHMARK (noise)->Apply (arguments);
BENCHMARK (subnormal)->Apply (arguments);
BENCHMARK (tail)->Apply (arguments);
BENCHMARK (gated)->Apply (arguments);
