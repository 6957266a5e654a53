// What a host pays for one instance: opening it (a plug-in scan opens every
// instance it finds), getting it ready to play, and the memory it keeps while
// it plays at 48 kHz (counter "heap_MB").

#include "HeapUsage.h"

#include <benchmark/benchmark.h>
#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter();

namespace
{
std::unique_ptr<juce::AudioProcessor> openInstance()
{
    return std::unique_ptr<juce::AudioProcessor> (createPluginFilter());
}

void openAndClose (benchmark::State& state)
{
    for (auto _ : state)
    {
        auto instance = openInstance();
        benchmark::DoNotOptimize (instance.get());
    }
}

void openAndPrepare (benchmark::State& state)
{
    const auto sampleRate = (double) state.range (0);
    const auto before = heapBytesInUse();
    std::int64_t kept = 0;

    for (auto _ : state)
    {
        auto instance = openInstance();
        instance->setPlayConfigDetails (2, 2, sampleRate, 512);
        instance->prepareToPlay (sampleRate, 512);
        kept = heapBytesInUse() - before;
        benchmark::DoNotOptimize (instance.get());
    }

    if (before >= 0)
        state.counters["heap_MB"] = (double) kept / (1024.0 * 1024.0);
}
}

BENCHMARK (openAndClose)->Unit (benchmark::kMillisecond);
BENCHMARK (openAndPrepare)->ArgName ("rate")->Arg (44100)->Arg (48000)->Arg (96000)->Unit (benchmark::kMillisecond);
