#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

class BasePlugin;

// What the host sees of one of the first twenty parameters. It holds no value
// of its own: every query goes through the plug-in, which answers from the
// Parameter of that index (or from its fallback value when there is none).
class HostParameter : public juce::AudioProcessorParameterWithID
{
public:
    HostParameter (BasePlugin& owner, int index, const juce::String& identifier, float defaultValue);

    float getValue() const override;
    void setValue (float newValue) override;
    float getDefaultValue() const override { return defaultValue; }
    juce::String getName (int maximumLength) const override;
    juce::String getLabel() const override { return {}; }
    juce::String getText (float normalisedValue, int maximumLength) const override;
    float getValueForText (const juce::String& text) const override;
    bool isAutomatable() const override { return true; }
    bool isMetaParameter() const override { return false; }

private:
    BasePlugin& owner;
    const int index;
    const float defaultValue;
};
