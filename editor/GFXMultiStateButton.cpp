#include "GFXMultiStateButton.h"

#include "SkinValues.h"

#include <cmath>

void GFXMultiStateButton::loadOwnAttributes (const juce::XmlElement& element)
{
    loadClickAttributes (element);
    numStates = juce::jmax (0, SkinValues::readInt (element, "states"));
}

void GFXMultiStateButton::showParameterValue()
{
    if (auto* p = getParameter())
    {
        const int last = juce::jmax (0, getNumStates() - 1);
        state = juce::jlimit (0, last, (int) std::floor (p->getNormalisedValue() * (float) last + 0.5f));
        repaint();
    }
}

void GFXMultiStateButton::clicked (const juce::ModifierKeys& modifiers)
{
    const int states = juce::jmax (1, getNumStates());
    state = (state + 1) % states;
    repaint();

    if (states > 1)
        setParameterFromUser ((float) state / (float) (states - 1));

    GFXButton::clicked (modifiers);
}
