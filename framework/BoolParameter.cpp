#include "BoolParameter.h"

BoolParameter::BoolParameter (uint32_t index, const juce::String& name, bool isStateFlag, bool initial)
    : Parameter (index, name), stateFlag (isStateFlag), value (initial)
{
}

std::unique_ptr<Parameter> BoolParameter::clone() const
{
    auto copy = std::make_unique<BoolParameter> (getIndex(), getName(), stateFlag, value.load());
    copyCommonFieldsTo (*copy);
    return copy;
}

float BoolParameter::getValue() const { return value.load() ? 1.0f : 0.0f; }
float BoolParameter::getNormalisedValue() const { return getValue(); }
int BoolParameter::getIntValue() const { return value.load() ? 1 : 0; }
bool BoolParameter::getBoolValue() const { return value.load(); }
juce::String BoolParameter::getText() const { return value.load() ? "true" : "false"; }

// Values in the upper half of 0..1 (the midpoint included) are on; NaN is off.
void BoolParameter::setValue (float newValue, bool notify)
{
    setBoolValue (clampToRange (newValue, 0.0f, 1.0f) >= 0.5f, notify);
}

void BoolParameter::setNormalisedValue (float newValue, bool notify) { setValue (newValue, notify); }

void BoolParameter::setIntValue (int newValue, bool notify) { setBoolValue (newValue != 0, notify); }

void BoolParameter::setBoolValue (bool newValue, bool notify)
{
    if (value.exchange (newValue) != newValue)
        notifyChange (notify);
}

void BoolParameter::setText (const juce::String& text, bool notify)
{
    const auto word = text.trim();

    if (word.equalsIgnoreCase ("true") || word.equalsIgnoreCase ("yes") || word.equalsIgnoreCase ("on"))
        setBoolValue (true, notify);
    else if (word.equalsIgnoreCase ("false") || word.equalsIgnoreCase ("no") || word.equalsIgnoreCase ("off"))
        setBoolValue (false, notify);
    else
        setValue (word.getFloatValue(), notify);
}

void BoolParameter::copyValueFrom (const Parameter& other, bool notify) { setBoolValue (other.getBoolValue(), notify); }
