#pragma once

#include "PatternNumberDisplay.h"

// A note parameter's value as a note name over the whole MIDI range.
class NoteDisplay : public PatternNumberDisplay
{
public:
    explicit NoteDisplay (const juce::String& name) : PatternNumberDisplay (name) {}

protected:
    void loadOwnAttributes (const juce::XmlElement& element) override
    {
        PatternNumberDisplay::loadOwnAttributes (element);
        notePattern = { 0, 127 };
    }
};
