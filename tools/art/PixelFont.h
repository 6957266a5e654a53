#pragma once

#include <juce_graphics/juce_graphics.h>

// The displays' bitmap font: one 7 × 9 cell per character code, stacked
// vertically from code 32, light glyphs on a transparent ground.
namespace PixelFont
{
    constexpr int cellWidth = 7, cellHeight = 9;
    constexpr int firstCode = 32, lastCode = 223;

    // The lit pixels of a character's cell; an empty mask for codes without a glyph.
    std::array<std::array<bool, cellWidth>, cellHeight> glyph (int code);

    // At a scale above 1 the glyphs keep their pixel shapes, and the steps of
    // their diagonals are filled in with the finer pixels the scale offers.
    juce::Image drawStrip (juce::Colour ink, float scale);

    // Text in the font, for pixel-exact captions drawn elsewhere.
    void drawText (juce::Graphics&, const juce::String& text, int x, int y, juce::Colour ink);
}
