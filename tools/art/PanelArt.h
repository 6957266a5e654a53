#pragma once

#include <juce_graphics/juce_graphics.h>

// Every image the skin names, drawn, with the file name it is stored under.
struct ArtFile
{
    juce::String fileName;
    juce::Image image;
};

// `scale` device pixels to one panel pixel; at 1 the files carry the skin's
// own names, at 2 the names of their double-resolution twins.
std::vector<ArtFile> drawPanelArt (float scale);

// The panel as the editor shows it: the background with each knob's frame
// for its parameter's default value (from the parameter description) and
// sample display texts, from the 1x art. Only for looking at; the plug-in
// never loads it.
juce::Image drawPanelPreview (const std::vector<ArtFile>&, const juce::XmlElement& parameterDescription);
