#pragma once

#include <juce_core/juce_core.h>

// skin.xml as the editor reads it, one element per control of the layout table.
std::unique_ptr<juce::XmlElement> createSkinDocument();
