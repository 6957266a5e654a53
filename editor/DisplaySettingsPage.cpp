#include "DisplaySettingsPage.h"

#include "OptionsPanel.h"

#include "framework/EditorZoom.h"

// Each item's id is its zoom in percent.
DisplaySettingsPage::DisplaySettingsPage (int currentZoom, std::function<void (int)> setZoom)
    : onZoomChosen (std::move (setZoom))
{
    for (const int percent : EditorZoom::steps)
        zoom.addItem (juce::String (percent) + " %", percent);

    zoom.setSelectedId (currentZoom, juce::dontSendNotification);
    zoom.setTitle ("Zoom");
    zoom.onChange = [this] { onZoomChosen (zoom.getSelectedId()); };
    addAndMakeVisible (zoom);
}

void DisplaySettingsPage::paint (juce::Graphics& g)
{
    OptionsPanel::drawPageText (g, { "Display", { { "Zoom", 48 } },
                                     "The window's size for every instance. The host's or desktop's own scale comes on top.", 88 },
                                getWidth());
}

void DisplaySettingsPage::resized()
{
    zoom.setBounds (170, 48, 160, 24);
}
