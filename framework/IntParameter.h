#pragma once

#include "Parameter.h"

// An integer between min and max; normalised values map to the nearest step.
class IntParameter : public Parameter
{
public:
    IntParameter (uint32_t index, const juce::String& name, int min = 0, int max = 127, int value = 0);

    int getMinimum() const noexcept { return min; }
    int getMaximum() const noexcept { return max; }

    std::unique_ptr<Parameter> clone() const override;

    float getValue() const override;
    float getNormalisedValue() const override;
    int getIntValue() const override;
    bool getBoolValue() const override;
    juce::String getText() const override;

    void setValue (float value, ChangeOrigin origin) override;
    void setNormalisedValue (float value, ChangeOrigin origin) override;
    void setIntValue (int value, ChangeOrigin origin) override;
    void setBoolValue (bool value, ChangeOrigin origin) override;
    void setText (const juce::String& text, ChangeOrigin origin) override;
    void copyValueFrom (const Parameter& other, ChangeOrigin origin) override;

protected:
    const int min, max;
    std::atomic<int> value;
};

// A MIDI note number, 0..127; its text is the note's name ("C4" is 60).
class NoteParameter : public IntParameter
{
public:
    NoteParameter (uint32_t index, const juce::String& name, int value = 0);

    std::unique_ptr<Parameter> clone() const override;
    juce::String getText() const override;
    void setText (const juce::String& text, ChangeOrigin origin) override;
};
