#pragma once

#include "Parameter.h"

// One item of a list of names; the value is the item's position.
class EnumParameter : public Parameter
{
public:
    EnumParameter (uint32_t index, const juce::String& name, const juce::StringArray& items, int value = 0);

    const juce::StringArray& getItems() const noexcept { return items; }

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
    int lastItem() const noexcept { return juce::jmax (0, items.size() - 1); }

    const juce::StringArray items;
    std::atomic<int> value;
};
