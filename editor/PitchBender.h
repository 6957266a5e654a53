#pragma once

#include "GFXSlider.h"

// A vertical wheel that springs back to its centre when let go.
class PitchBender : public GFXSlider
{
public:
    explicit PitchBender (const juce::String& name) : GFXSlider (name)
    {
        setSliderStyle (LinearVertical);
    }

protected:
    void stoppedDragging() override
    {
        setValue (0.5, juce::sendNotificationSync);
        GFXSlider::stoppedDragging();
    }
};
