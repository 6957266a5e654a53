#pragma once

#include <juce_graphics/juce_graphics.h>

// Reading the skin's attribute values. Integers take their leading digits, so
// a missing or non-numeric value reads as 0; colours are AARRGGBB hex.
namespace SkinValues
{
    int readInt (const juce::XmlElement& element, const juce::String& attribute, int valueWhenAbsent = 0);
    juce::Colour readColour (const juce::XmlElement& element, const juce::String& attribute, juce::Colour valueWhenAbsent);

    // "yes" / "no"; any other word (or none) gives valueOtherwise.
    bool readYesNo (const juce::XmlElement& element, const juce::String& attribute, bool valueOtherwise);

    // `size` and `pos` children over the given bounds; each absent child
    // leaves its part unchanged.
    juce::Rectangle<int> readBounds (const juce::XmlElement& element, juce::Rectangle<int> bounds);

    // Decodes an image compiled in under this file name; invalid when missing.
    juce::Image loadImage (const juce::String& fileName);
}
