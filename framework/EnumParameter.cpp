#include "EnumParameter.h"

#include <cmath>

EnumParameter::EnumParameter (uint32_t index, const juce::String& name, const juce::StringArray& itemNames, int initial)
    : Parameter (index, name), items (itemNames), value (clampToRange (initial, 0, lastItem()))
{
}

std::unique_ptr<Parameter> EnumParameter::clone() const
{
    auto copy = std::make_unique<EnumParameter> (getIndex(), getName(), items, value.load());
    copyCommonFieldsTo (*copy);
    return copy;
}

float EnumParameter::getValue() const { return (float) value.load(); }

float EnumParameter::getNormalisedValue() const
{
    return lastItem() > 0 ? (float) value.load() / (float) lastItem() : 0.0f;
}

int EnumParameter::getIntValue() const { return value.load(); }

bool EnumParameter::getBoolValue() const
{
    const int v = value.load();
    return ! (lastItem() - v > v);
}

juce::String EnumParameter::getText() const { return items[value.load()]; }

void EnumParameter::setValue (float newValue, ChangeOrigin origin)
{
    const float clamped = clampToRange (newValue, 0.0f, (float) lastItem());
    setIntValue ((int) std::floor (clamped + 0.5f), origin);
}

void EnumParameter::setNormalisedValue (float newValue, ChangeOrigin origin)
{
    setValue (clampToRange (newValue, 0.0f, 1.0f) * (float) lastItem(), origin);
}

void EnumParameter::setIntValue (int newValue, ChangeOrigin origin)
{
    if (storeIfDifferent (value, clampToRange (newValue, 0, lastItem())))
        notifyChange (origin);
}

void EnumParameter::setBoolValue (bool newValue, ChangeOrigin origin) { setIntValue (newValue ? lastItem() : 0, origin); }

// An item's name selects it (case aside); anything else is read as a position.
void EnumParameter::setText (const juce::String& text, ChangeOrigin origin)
{
    const int item = items.indexOf (text.trim(), true);
    setValue (item >= 0 ? (float) item : text.getFloatValue(), origin);
}

void EnumParameter::copyValueFrom (const Parameter& other, ChangeOrigin origin) { setValue (other.getValue(), origin); }
