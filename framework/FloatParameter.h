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

    void setValue (float value, ChangeOrigin origin) override;
    void setNormalisedValue (float value, ChangeOrigin origin) override;
    void setIntValue (int value, ChangeOrigin origin) override;
    void setBoolValue (bool value, ChangeOrigin origin) override;
    void setText (const juce::String& text, ChangeOrigin origin) override;
    void copyValueFrom (const Parameter& other, ChangeOrigin origin) override;

private:
    const float min, max;
    std::atomic<float> value;
};
