#pragma once

#include "Parameter.h"

// A float between min and max; the normalised form is its place in the range.
class FloatParameter : public Parameter
{
public:
    FloatParameter (uint32_t index, const juce::String& name, float min = 0.0f, float max = 1.0f, float value = 0.0f);

    float getMinimum() const noexcept { return min; }
    float getMaximum() const noexcept { return max; }

    std::unique_ptr<Parameter> clone() const override;

    float getValue() const override;
    float getNormalisedValue() const override;
    int getIntValue() const override;
    bool getBoolValue() const override;
    juce::String getText() const override;

    void setValue (float value, bool notify) override;
    void setNormalisedValue (float value, bool notify) override;
    void setIntValue (int value, bool notify) override;
    void setBoolValue (bool value, bool notify) override;
    void setText (const juce::String& text, bool notify) override;
    void copyValueFrom (const Parameter& other, bool notify) override;

private:
    const float min, max;
    std::atomic<float> value;
};
