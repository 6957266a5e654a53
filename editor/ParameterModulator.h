#pragma once

#include "GFXSlider.h"

// A bipolar modulation amount: a knob whose middle is "no modulation", which
// a double-click returns it to.
class ParameterModulator : public GFXSlider
{
public:
    explicit ParameterModulator (const juce::String& name) : GFXSlider (name)
    {
        setDoubleClickReturnValue (true, 0.5);
    }
};
