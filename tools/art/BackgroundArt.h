#pragma once

#include "SkinLayout.h"

// The panel behind every control: chassis, header, labelled sections, knob
// scales and legends, display windows, all placed from the layout table.
namespace BackgroundArt
{
    juce::Image draw (float scale);
}
