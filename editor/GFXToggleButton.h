#pragma once

#include "GFXButton.h"

// An on/off button bound to a flag: "2D" strips hold off and on, "3D" strips
// off, off pressed, on, on pressed.
class GFXToggleButton : public GFXButton
{
public:
    explicit GFXToggleButton (const juce::String& name);

    // A toggle fires no events: it only moves its parameter.
    void assignAction (const juce::String&, int, const juce::String&) override {}

protected:
    int getShownState() const override { return getToggleState() ? 1 : 0; }
    void loadOwnAttributes (const juce::XmlElement& element) override { loadClickAttributes (element); }
    void showParameterValue() override;
    void clicked (const juce::ModifierKeys& modifiers) override;
};
