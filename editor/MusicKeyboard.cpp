#include "MusicKeyboard.h"

#include "SkinValues.h"

MusicKeyboard::MusicKeyboard (const juce::String& name)
    : juce::Component (name)
{
    keyboard.setKeyPressBaseOctave (4);
    keyboard.setWantsKeyboardFocus (false);
    addAndMakeVisible (keyboard);
    state.addListener (this);
}

MusicKeyboard::~MusicKeyboard()
{
    state.removeListener (this);
}

void MusicKeyboard::loadGeometry (const juce::XmlElement& element)
{
    setBounds (SkinValues::readBounds (element, getBounds()));
}

void MusicKeyboard::showParameterValue()
{
    auto* p = getParameter();
    const int note = p != nullptr ? juce::jlimit (0, 127, p->getIntValue()) : -1;

    if (note == shownNote)
        return;

    const juce::ScopedValueSetter<bool> guard (showing, true);

    if (shownNote >= 0)
        state.noteOff (1, shownNote, 0.0f);

    shownNote = note;

    if (shownNote >= 0)
        state.noteOn (1, shownNote, 1.0f);
}

void MusicKeyboard::handleNoteOn (juce::MidiKeyboardState*, int, int note, float)
{
    auto* p = getParameter();

    if (showing || p == nullptr)
        return;

    p->setIntValue (note, ChangeOrigin::editor);
    reportMovement();

    // The clicked key stays down only while held; the parameter's key shows after.
    juce::Component::SafePointer<MusicKeyboard> safeThis (this);
    juce::MessageManager::callAsync ([safeThis]
    {
        if (safeThis != nullptr)
        {
            safeThis->shownNote = -1;
            safeThis->state.allNotesOff (1);
            safeThis->showParameterValue();
        }
    });
}
