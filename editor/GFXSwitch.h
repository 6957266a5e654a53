#pragma once

#include "GFXSlider.h"

// A stepped control: one position per strip frame. `style` chooses how it is
// dragged ("Rotary", "Horizontal" or "Vertical").
class GFXSwitch : public GFXSlider
{
public:
    explicit GFXSwitch (const juce::String& name) : GFXSlider (name) {}

protected:
    void loadOwnAttributes (const juce::XmlElement& element) override;
    void frameSizeChanged() override;
};
