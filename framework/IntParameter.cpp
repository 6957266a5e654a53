#include "IntParameter.h"

#include <juce_audio_basics/juce_audio_basics.h>

#include <cmath>

IntParameter::IntParameter (uint32_t index, const juce::String& name, int minimum, int maximum, int initial)
    : Parameter (index, name), min (minimum), max (juce::jmax (minimum, maximum)),
      value (clampToRange (initial, minimum, juce::jmax (minimum, maximum)))
{
}

std::unique_ptr<Parameter> IntParameter::clone() const
{
    auto copy = std::make_unique<IntParameter> (getIndex(), getName(), min, max, value.load());
    copyCommonFieldsTo (*copy);
    return copy;
}

float IntParameter::getValue() const { return (float) value.load(); }

float IntParameter::getNormalisedValue() const
{
    return max != min ? (float) (value.load() - min) / (float) (max - min) : 0.0f;
}

int IntParameter::getIntValue() const { return value.load(); }

bool IntParameter::getBoolValue() const
{
    const int v = value.load();
    return ! (max - v > v - min);
}

juce::String IntParameter::getText() const { return juce::String (value.load()); }

void IntParameter::setValue (float newValue, ChangeOrigin origin)
{
    // NaN takes the minimum, like every other kind.
    const float clamped = clampToRange (newValue, (float) min, (float) max);
    setIntValue ((int) std::floor (clamped + 0.5f), origin);
}

void IntParameter::setNormalisedValue (float newValue, ChangeOrigin origin)
{
    const float p = clampToRange (newValue, 0.0f, 1.0f);
    setIntValue (min + (int) std::floor ((float) (max - min) * p + 0.5f), origin);
}

void IntParameter::setIntValue (int newValue, ChangeOrigin origin)
{
    if (storeIfDifferent (value, clampToRange (newValue, min, max)))
        notifyChange (origin);
}

void IntParameter::setBoolValue (bool newValue, ChangeOrigin origin) { setIntValue (newValue ? max : min, origin); }

void IntParameter::setText (const juce::String& text, ChangeOrigin origin) { setValue (text.getFloatValue(), origin); }

void IntParameter::copyValueFrom (const Parameter& other, ChangeOrigin origin) { setValue (other.getValue(), origin); }

NoteParameter::NoteParameter (uint32_t index, const juce::String& name, int initial)
    : IntParameter (index, name, 0, 127, initial)
{
}

std::unique_ptr<Parameter> NoteParameter::clone() const
{
    auto copy = std::make_unique<NoteParameter> (getIndex(), getName(), value.load());
    copyCommonFieldsTo (*copy);
    return copy;
}

juce::String NoteParameter::getText() const
{
    return juce::MidiMessage::getMidiNoteName (value.load(), true, true, 4);
}

void NoteParameter::setText (const juce::String& text, ChangeOrigin origin)
{
    const auto trimmed = text.trim();

    if (trimmed.containsOnly ("-+0123456789."))
    {
        IntParameter::setText (trimmed, origin);
        return;
    }

    for (int note = 0; note < 128; ++note)
    {
        if (juce::MidiMessage::getMidiNoteName (note, true, true, 4).equalsIgnoreCase (trimmed)
            || juce::MidiMessage::getMidiNoteName (note, false, true, 4).equalsIgnoreCase (trimmed))
        {
            setIntValue (note, origin);
            return;
        }
    }

    setIntValue (0, origin);
}
