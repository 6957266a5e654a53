#pragma once

#include "PluginRender.h"
#include "PluginSettings.h"
#include "engine/Quorlane.h"

// A whole stereo buffer streamed through a fresh instance carrying the
// settings, as the renderer streams a file; what reached the sink is kept.
struct BufferRender
{
    juce::AudioBuffer<float> audio { 2, 0 };
    RenderSummary summary;
};

inline BufferRender renderBuffer (const juce::AudioBuffer<float>& input, const PluginSettings& settings,
                                  const TailLength& tail, double sampleRate)
{
    Quorlane plugin;
    applySettings (plugin, settings);

    int position = 0;
    auto source = [&] (juce::AudioBuffer<float>& block)
    {
        const int count = std::min (block.getNumSamples(), input.getNumSamples() - position);

        for (int channel = 0; channel < 2; ++channel)
            block.copyFrom (channel, 0, input, channel, position, count);

        position += count;
        return count;
    };

    BufferRender result;
    auto sink = [&result] (const juce::AudioBuffer<float>& block, int start, int count)
    {
        const int length = result.audio.getNumSamples();
        result.audio.setSize (2, length + count, true);

        for (int channel = 0; channel < 2; ++channel)
            result.audio.copyFrom (channel, length, block, channel, start, count);
    };

    result.summary = renderThroughPlugin (plugin, sampleRate, source, sink, tail);
    return result;
}
