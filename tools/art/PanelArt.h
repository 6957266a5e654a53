#pragma once

#include <juce_graphics/juce_graphics.h>

// Every image the skin names, drawn, with the file name it is stored under.
struct ArtFile
{
    juce::String fileName;
    juce::Image image;
};

std::vector<ArtFile> drawPanelArt();

// The panel as the editor shows it: the background with each knob's frame
// for its parameter's default value (from the parameter description) and
// sample display texts. Only for looking at; the plug-in never loads it.
juce::Image drawPanelPreview (const std::vector<ArtFile>&, const juce::XmlElement& parameterDescription);
