#pragma once

#include "GFXSlider.h"

// A continuous rotary control (vertical drag) drawn from a film strip.
class GFXKnob : public GFXSlider
{
public:
    explicit GFXKnob (const juce::String& name) : GFXSlider (name) {}
};
