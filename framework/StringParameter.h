#pragma once

#include "Parameter.h"

// A text value. Numeric reads parse the text; numeric writes store the number
// as text. A maximum length of 0 means no limit.
class StringParameter : public Parameter
{
public:
    StringParameter (uint32_t index, const juce::String& name, const juce::String& value = {}, int maximumLength = 0);

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
    const int maximumLength;
    mutable juce::SpinLock textLock;
    juce::String text;
};
