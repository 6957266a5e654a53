#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

// The options page of the window's zoom: 100, 125, 150 or 200 % of the
// skin's size, the same for every instance (kept in the user settings).
class DisplaySettingsPage : public juce::Component
{
public:
    // `setZoom` receives the chosen zoom in percent.
    DisplaySettingsPage (int currentZoom, std::function<void (int)> setZoom);

    juce::ComboBox& getZoomBox() noexcept { return zoom; }

    void paint (juce::Graphics& g) override;
    void resized() override;

private:
    juce::ComboBox zoom;
    std::function<void (int)> onZoomChosen;
};
