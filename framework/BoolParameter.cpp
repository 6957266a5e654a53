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
void BoolParameter::setValue (float newValue, ChangeOrigin origin)
{
    setBoolValue (clampToRange (newValue, 0.0f, 1.0f) >= 0.5f, origin);
}

void BoolParameter::setNormalisedValue (float newValue, ChangeOrigin origin) { setValue (newValue, origin); }

void BoolParameter::setIntValue (int newValue, ChangeOrigin origin) { setBoolValue (newValue != 0, origin); }

void BoolParameter::setBoolValue (bool newValue, ChangeOrigin origin)
{
    if (value.exchange (newValue) != newValue)
        notifyChange (origin);
}

void BoolParameter::setText (const juce::String& text, ChangeOrigin origin)
{
    const auto word = text.trim();

    if (word.equalsIgnoreCase ("true") || word.equalsIgnoreCase ("yes") || word.equalsIgnoreCase ("on"))
        setBoolValue (true, origin);
    else if (word.equalsIgnoreCase ("false") || word.equalsIgnoreCase ("no") || word.equalsIgnoreCase ("off"))
        setBoolValue (false, origin);
    else
        setValue (word.getFloatValue(), origin);
}

void BoolParameter::copyValueFrom (const Parameter& other, ChangeOrigin origin) { setBoolValue (other.getBoolValue(), origin); }
