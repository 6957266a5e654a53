#include "HostParameter.h"

#include "BasePlugin.h"

HostParameter::HostParameter (BasePlugin& o, int i, const juce::String& identifier, float defaultNormalised)
    : AudioProcessorParameterWithID (juce::ParameterID (identifier, 1), o.getHostParameterName (i)),
      owner (o), index (i), defaultValue (defaultNormalised)
{
}

float HostParameter::getValue() const { return owner.getHostParameterValue (index); }

void HostParameter::setValue (float newValue) { owner.setHostParameterValue (index, newValue); }

juce::String HostParameter::getName (int maximumLength) const
{
    return owner.getHostParameterName (index).substring (0, maximumLength);
}

juce::String HostParameter::getText (float normalisedValue, int maximumLength) const
{
    return owner.getHostParameterText (index, normalisedValue).substring (0, maximumLength);
}

float HostParameter::getValueForText (const juce::String& text) const
{
    return owner.getHostParameterValueForText (index, text);
}
