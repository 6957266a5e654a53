#include "DisplaySettingsPage.h"

#include "OptionsPanel.h"

#include "framework/EditorZoom.h"

namespace
{
    const juce::Colour textColour (0xffbef6ff);
}

// Each item's id is its zoom in percent.
DisplaySettingsPage::DisplaySettingsPage (int currentZoom, std::function<void (int)> setZoom)
    : onZoomChosen (std::move (setZoom))
{
    for (const int percent : EditorZoom::steps)
        zoom.addItem (juce::String (percent) + " %", percent);

    zoom.setSelectedId (currentZoom, juce::dontSendNotification);
    zoom.onChange = [this] { onZoomChosen (zoom.getSelectedId()); };
    addAndMakeVisible (zoom);
}

void DisplaySettingsPage::paint (juce::Graphics& g)
{
    g.setColour (textColour);
    g.setFont (OptionsPanel::getFont (16.0f).boldened());
    g.drawText ("Display", 20, 12, 300, 22, juce::Justification::centredLeft);

    g.setFont (OptionsPanel::getFont (13.0f));
    g.drawText ("Zoom", 20, 48, 140, 24, juce::Justification::centredLeft);

    g.setColour (textColour.withAlpha (0.75f));
    g.drawFittedText ("The window's size for every instance. The host's or desktop's own scale comes on top.",
                      juce::Rectangle<int> (20, 88, getWidth() - 40, 40), juce::Justification::topLeft, 2);
}

void DisplaySettingsPage::resized()
{
    zoom.setBounds (170, 48, 160, 24);
}
