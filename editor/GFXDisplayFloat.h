#pragma once

#include "GFXDisplay.h"

// A numeric parameter shown with the plug-in's own text for it (its units).
class GFXDisplayFloat : public GFXDisplay
{
public:
    using GFXDisplay::GFXDisplay;

protected:
    juce::String getParameterText() const override;
};
