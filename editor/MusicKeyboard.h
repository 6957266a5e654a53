#pragma once

#include "GUIController.h"

#include <juce_audio_utils/juce_audio_utils.h>

// A piano keyboard that picks a note: clicking a key sets the bound (note)
// parameter to it, and the key of the parameter's note is shown held.
class MusicKeyboard : public juce::Component,
                      public GUIController,
                      private juce::MidiKeyboardState::Listener
{
public:
    explicit MusicKeyboard (const juce::String& name);
    ~MusicKeyboard() override;

    juce::Component& getComponent() override { return *this; }

    void resized() override { keyboard.setBounds (getLocalBounds()); }

protected:
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override;

private:
    void handleNoteOn (juce::MidiKeyboardState*, int channel, int note, float velocity) override;
    void handleNoteOff (juce::MidiKeyboardState*, int, int, float) override {}

    juce::MidiKeyboardState state;
    juce::MidiKeyboardComponent keyboard { state, juce::MidiKeyboardComponent::horizontalKeyboard };
    int shownNote = -1;
    bool showing = false;
};
