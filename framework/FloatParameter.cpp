#include "FloatParameter.h"

FloatParameter::FloatParameter (uint32_t index, const juce::String& name, float minimum, float maximum, float initial)
    : Parameter (index, name), min (minimum), max (maximum), value (clampToRange (initial, minimum, maximum))
{
}

std::unique_ptr<Parameter> FloatParameter::clone() const
{
    auto copy = std::make_unique<FloatParameter> (getIndex(), getName(), min, max, value.load());
    copyCommonFieldsTo (*copy);
    return copy;
}

float FloatParameter::getValue() const { return value.load(); }

float FloatParameter::getNormalisedValue() const
{
    return max != min ? (value.load() - min) / (max - min) : 0.0f;
}

int FloatParameter::getIntValue() const { return (int) value.load(); }

// The upper half of the range, the midpoint included.
bool FloatParameter::getBoolValue() const
{
    const float v = value.load();
    return ! (max - v > v - min);
}

juce::String FloatParameter::getText() const { return juce::String (value.load(), 9); }

void FloatParameter::setValue (float newValue, ChangeOrigin origin)
{
    if (storeIfDifferent (value, clampToRange (newValue, min, max)))
        notifyChange (origin);
}

void FloatParameter::setNormalisedValue (float newValue, ChangeOrigin origin)
{
    setValue (min + (max - min) * clampToRange (newValue, 0.0f, 1.0f), origin);
}

void FloatParameter::setIntValue (int newValue, ChangeOrigin origin) { setValue ((float) newValue, origin); }

void FloatParameter::setBoolValue (bool newValue, ChangeOrigin origin) { setValue (newValue ? max : min, origin); }

void FloatParameter::setText (const juce::String& text, ChangeOrigin origin) { setValue (text.getFloatValue(), origin); }

void FloatParameter::copyValueFrom (const Parameter& other, ChangeOrigin origin) { setValue (other.getValue(), origin); }
