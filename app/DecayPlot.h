#pragma once

#include <juce_graphics/juce_graphics.h>

struct ImpulseResponse;

// Both channels' energy decay curves in dB over seconds, with the plug-in's
// decay-time estimate marked, on a white background.
juce::Image drawDecayPlot (const ImpulseResponse& response);

// Writes the image as PNG through a SafeOutputFile.
void writePng (const juce::Image& image, const juce::File& target, bool replaceExisting);
