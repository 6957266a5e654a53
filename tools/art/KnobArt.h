#pragma once

#include "SkinLayout.h"

// A knob's film strip: frame 0 points to the lower left, the last frame to the
// lower right, over the same 300° arc the background's scale marks follow.
namespace KnobArt
{
    constexpr float sweepDegrees = 300.0f;

    // The pointer's angle, clockwise from straight up, for a position 0..1.
    float angleFor (float position);

    // The knob's outer radius inside a frame; the background's scale sits just outside it.
    float radiusFor (const SkinLayout::Strip&);

    juce::Image drawStrip (const SkinLayout::Strip&, float scale, juce::Colour cap, juce::Colour pointer);
}
