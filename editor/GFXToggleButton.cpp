#include "GFXToggleButton.h"

GFXToggleButton::GFXToggleButton (const juce::String& name)
    : GFXButton (name)
{
    setClickingTogglesState (true);
}

void GFXToggleButton::showParameterValue()
{
    if (auto* p = getParameter())
        setToggleState (p->getNormalisedValue() >= 0.5f, juce::dontSendNotification);
}

void GFXToggleButton::clicked (const juce::ModifierKeys&)
{
    setParameterFromUser (getToggleState() ? 1.0f : 0.0f);
}
