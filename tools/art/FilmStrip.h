#pragma once

#include <juce_graphics/juce_graphics.h>

#include <functional>

// Draws `frames` frames of one size stacked vertically into one transparent
// image; each call of `drawFrame` sees a graphics context whose origin is its
// frame's top-left corner and whose clip is the frame. Sizes are in panel
// pixels; `scale` device pixels make one panel pixel, so a scale of 2 draws
// the same frames at double resolution.
juce::Image drawFilmStrip (int frameWidth, int frameHeight, int frames, float scale,
                           const std::function<void (juce::Graphics&, int frame)>& drawFrame);
