// What a host block costs through the whole plug-in when the host automates
// every parameter in it (20 changes, then 64 samples), beside the same block
// without changes. As in a host, the instance is made and prepared on the
// message thread, and the changes and the block come from an audio thread of
// their own, whose CPU time is what is measured.

#include <benchmark/benchmark.h>
#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>
#include <thread>

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter();

namespace
{
void hostBlock (benchmark::State& state)
{
    const bool automated = state.range (0) != 0;
    constexpr int blockSize = 64;
    std::unique_ptr<juce::AudioProcessor> plugin (createPluginFilter());
    plugin->setPlayConfigDetails (2, 2, 48000.0, blockSize);
    plugin->prepareToPlay (48000.0, blockSize);

    juce::AudioBuffer<float> buffer (2, blockSize);
    juce::MidiBuffer midi;
    juce::Random random (5);
    const auto parameters = plugin->getParameters();
    int block = 0;

    // The timing loop runs where it is measured: on the audio thread.
    std::thread audioThread ([&]
    {
        for (auto _ : state)
        {
            for (int channel = 0; channel < 2; ++channel)
                for (int i = 0; i < blockSize; ++i)
                    buffer.setSample (channel, i, random.nextFloat() - 0.5f);

            if (automated)
            {
                for (int i = 0; i < 20; ++i)
                {
                    const float value = (float) ((block * 7 + i * 13) % 101) / 100.0f;
                    parameters[i]->setValue (value);
                    parameters[i]->sendValueChangedMessageToListeners (value);
                }
            }

            plugin->processBlock (buffer, midi);
            benchmark::DoNotOptimize (buffer.getReadPointer (0));
            ++block;
        }
    });

    audioThread.join();
    plugin->releaseResources();
}
}

BENCHMARK (hostBlock)->ArgName ("automated")->Arg (0)->Arg (1)->Unit (benchmark::kMicrosecond);
