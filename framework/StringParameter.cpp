#include "StringParameter.h"

StringParameter::StringParameter (uint32_t index, const juce::String& name, const juce::String& initial, int maxLength)
    : Parameter (index, name), maximumLength (juce::jmax (0, maxLength)),
      text (maximumLength > 0 ? initial.substring (0, maximumLength) : initial)
{
}

std::unique_ptr<Parameter> StringParameter::clone() const
{
    auto copy = std::make_unique<StringParameter> (getIndex(), getName(), getText(), maximumLength);
    copyCommonFieldsTo (*copy);
    return copy;
}

juce::String StringParameter::getText() const
{
    const juce::SpinLock::ScopedLockType sl (textLock);
    return text;
}

float StringParameter::getValue() const { return getText().getFloatValue(); }
float StringParameter::getNormalisedValue() const { return juce::jlimit (0.0f, 1.0f, getValue()); }
int StringParameter::getIntValue() const { return getText().getIntValue(); }

bool StringParameter::getBoolValue() const
{
    const auto t = getText().trim();
    return t.equalsIgnoreCase ("true") || t.getFloatValue() >= 0.5f;
}

void StringParameter::setValue (float newValue, ChangeOrigin origin) { setText (juce::String (newValue), origin); }
void StringParameter::setNormalisedValue (float newValue, ChangeOrigin origin) { setValue (juce::jlimit (0.0f, 1.0f, newValue), origin); }
void StringParameter::setIntValue (int newValue, ChangeOrigin origin) { setText (juce::String (newValue), origin); }
void StringParameter::setBoolValue (bool newValue, ChangeOrigin origin) { setText (newValue ? "true" : "false", origin); }

void StringParameter::setText (const juce::String& newText, ChangeOrigin origin)
{
    const auto limited = maximumLength > 0 ? newText.substring (0, maximumLength) : newText;

    {
        const juce::SpinLock::ScopedLockType sl (textLock);

        if (text == limited)
            return;

        text = limited;
    }

    notifyChange (origin);
}

void StringParameter::copyValueFrom (const Parameter& other, ChangeOrigin origin) { setText (other.getText(), origin); }
