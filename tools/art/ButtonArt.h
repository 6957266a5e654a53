#pragma once

#include "SkinLayout.h"

// Two-frame buttons: frame 0 at rest, frame 1 pressed, its legend lit amber.
namespace ButtonArt
{
    // The wordmark face shows the product's name on the panel and opens the about window.
    juce::Image drawStrip (const SkinLayout::Control&, float scale);
}
