#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

#include <array>
#include <map>

// Driving an instance in process as a host does, and reading what it plays.

// The twenty values the host sees, as an instance of ours holds them now.
template <typename Plugin>
std::array<float, 20> liveValues (const Plugin& plugin)
{
    std::array<float, 20> values {};

    for (uint32_t i = 0; i < values.size(); ++i)
        values[i] = plugin.getPluginParameter (i)->getNormalisedValue();

    return values;
}

// Stereo at 48 kHz.
inline void prepare (juce::AudioProcessor& plugin, int blockSize)
{
    plugin.setPlayConfigDetails (2, 2, 48000.0, blockSize);
    plugin.prepareToPlay (48000.0, blockSize);
}

// Blocks of silence, the MIDI given arriving with the first.
inline void processBlocks (juce::AudioProcessor& plugin, int blockSize, int numBlocks, juce::MidiBuffer midi = {})
{
    juce::AudioBuffer<float> buffer (2, blockSize);

    for (int block = 0; block < numBlocks; ++block)
    {
        buffer.clear();
        plugin.processBlock (buffer, midi);
        midi.clear();
    }
}

inline juce::MidiBuffer midiEvent (const juce::MidiMessage& message, int sample = 0)
{
    juce::MidiBuffer midi;
    midi.addEvent (message, sample);
    return midi;
}

// Long enough for the plug-in's message-thread poll to run.
inline void runMessageLoop (int milliseconds = 50)
{
    juce::MessageManager::getInstance()->runDispatchLoopUntil (milliseconds);
}

// The changes (and the last value of each) and the automation gestures the
// host is told of, by parameter index.
struct HostGestures : juce::AudioProcessorListener
{
    explicit HostGestures (juce::AudioProcessor& p) : processor (p) { processor.addListener (this); }
    ~HostGestures() override { processor.removeListener (this); }

    void audioProcessorParameterChanged (juce::AudioProcessor*, int index, float value) override
    {
        ++changes[index];
        values[index] = value;
    }

    void audioProcessorChanged (juce::AudioProcessor*, const ChangeDetails&) override {}
    void audioProcessorParameterChangeGestureBegin (juce::AudioProcessor*, int index) override { ++begun[index]; }
    void audioProcessorParameterChangeGestureEnd (juce::AudioProcessor*, int index) override { ++ended[index]; }

    juce::AudioProcessor& processor;
    std::map<int, int> changes, begun, ended;
    std::map<int, float> values;
};
