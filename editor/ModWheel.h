#pragma once

#include "GFXSlider.h"

// A vertical wheel that stays where it is left.
class ModWheel : public GFXSlider
{
public:
    explicit ModWheel (const juce::String& name) : GFXSlider (name)
    {
        setSliderStyle (LinearVertical);
    }
};
