#pragma once

#include "framework/MidiControl.h"

#include <juce_gui_basics/juce_gui_basics.h>

// The options page of the controller map: one row per controller with the
// parameter it moves (chosen from a list of the automatable parameters, by a
// click or Return on the row), the learn switch, and loading and saving map
// files.
class MidiSettingsPage : public juce::Component,
                         private juce::ListBoxModel,
                         private MidiControl::Listener
{
public:
    MidiSettingsPage (MidiControl& midi, ParameterManager& parameters);
    ~MidiSettingsPage() override;

    void resized() override;
    void paint (juce::Graphics& g) override;

private:
    int getNumRows() override { return MidiControl::numControllers; }
    void paintListBoxItem (int row, juce::Graphics& g, int width, int height, bool selected) override;
    void listBoxItemClicked (int row, const juce::MouseEvent& event) override;
    void returnKeyPressed (int row) override { chooseParameterFor (row); }
    juce::String getNameForRow (int row) override;

    void midiLearnModeChanged (bool isOn) override;
    void midiMapChanged() override;

    void chooseParameterFor (int controller);
    void loadMap();
    void saveMap();

    MidiControl& midi;
    juce::Array<Parameter*> automatable;

    juce::ListBox list;
    juce::ToggleButton learnButton { "MIDI learn" };
    juce::TextButton loadButton { "Load..." }, saveButton { "Save..." }, clearButton { "Clear" };
    std::unique_ptr<juce::FileChooser> chooser;
};
