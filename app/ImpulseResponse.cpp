#include "ImpulseResponse.h"

#include "PluginRender.h"
#include "engine/Quorlane.h"

namespace
{
    juce::String formatSeconds (const std::optional<double>& seconds)
    {
        return (seconds.has_value() ? juce::String (*seconds, 3) + " s" : juce::String ("n/a")).paddedLeft (' ', 10);
    }
}

ImpulseResponse ImpulseResponse::render (const PluginSettings& settings, double sampleRate)
{
    Quorlane plugin;
    applySettings (plugin, settings);

    ImpulseResponse response;
    response.sampleRate = sampleRate;

    bool impulseSent = false;
    auto source = [&impulseSent] (juce::AudioBuffer<float>& block)
    {
        if (impulseSent)
            return 0;

        block.clear();
        block.setSample (0, 0, 1.0f);
        block.setSample (1, 0, 1.0f);
        impulseSent = true;
        return 1;
    };

    // Grows in steps of about a second, so a long tail is not copied often.
    const int growth = (int) sampleRate;
    int length = 0;
    auto sink = [&response, &length, growth] (const juce::AudioBuffer<float>& block, int start, int count)
    {
        auto& samples = response.samples;

        if (length + count > samples.getNumSamples())
            samples.setSize (2, length + count + growth, true, true);

        for (int channel = 0; channel < 2; ++channel)
            samples.copyFrom (channel, length, block, channel, start, count);

        length += count;
    };

    const auto summary = renderThroughPlugin (plugin, sampleRate, source, sink, TailLength::untilSilent (longestSeconds, silenceLevel));

    response.samples.setSize (2, length, true);
    response.cutShort = summary.tailCutShort;

    if (auto* decayTime = plugin.getParameterManager().findParameter ("Decay Time"))
        response.estimatedDecaySeconds = decayTime->getValue();

    return response;
}

DecayTimes ImpulseResponse::measure (int channel) const
{
    return measureDecayTimes (samples.getReadPointer (channel), samples.getNumSamples(), sampleRate);
}

juce::String ImpulseResponse::report() const
{
    juce::String text;
    text << "Impulse response: " << juce::String (samples.getNumSamples() / sampleRate, 3) << " s at "
         << juce::String (sampleRate, 0) << " Hz"
         << (cutShort ? " (still sounding when cut off; the longer times are underestimated)" : "") << "\n"
         << juce::String().paddedRight (' ', 8) << juce::String ("EDT").paddedLeft (' ', 10)
         << juce::String ("T20").paddedLeft (' ', 10) << juce::String ("T30").paddedLeft (' ', 10) << "\n";

    const char* const names[] = { "Left", "Right" };

    for (int channel = 0; channel < 2; ++channel)
    {
        const auto times = measure (channel);
        text << juce::String (names[channel]).paddedRight (' ', 8)
             << formatSeconds (times.edt) << formatSeconds (times.t20) << formatSeconds (times.t30) << "\n";
    }

    text << "Plug-in Decay Time estimate: " << juce::String (estimatedDecaySeconds, 3) << " s\n";
    return text;
}
