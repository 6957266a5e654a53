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

    void setValue (float value, bool notify) override;
    void setNormalisedValue (float value, bool notify) override;
    void setIntValue (int value, bool notify) override;
    void setBoolValue (bool value, bool notify) override;
    void setText (const juce::String& text, bool notify) override;
    void copyValueFrom (const Parameter& other, bool notify) override;

private:
    const bool stateFlag;
    std::atomic<bool> value;
};
