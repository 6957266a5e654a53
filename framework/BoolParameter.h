#pragma once

#include "Parameter.h"

// An on/off value. The state flag marks a switch that belongs to the plug-in's
// state rather than to its sound ("state" in the parameter description).
class BoolParameter : public Parameter
{
public:
    BoolParameter (uint32_t index, const juce::String& name, bool isStateFlag = false, bool value = false);

    bool isState() const noexcept { return stateFlag; }

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
    const bool stateFlag;
    std::atomic<bool> value;
};
