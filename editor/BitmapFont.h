#pragma once

#include "SkinImage.h"

// A font cut from a vertical strip of fixed-size glyph cells: cell i holds the
// character firstCharacter + i, one strip width wide and glyphHeight tall.
// Cells are measured in the strip the skin names; its double-resolution twin
// is drawn where the display is shown enlarged.
class BitmapFont
{
public:
    void setStrip (const SkinImage& strip, juce::juce_wchar firstCharacter, int glyphHeight);
    const SkinImage& getStrip() const noexcept { return strip; }

    bool isValid() const noexcept { return strip.isValid() && getNumCells() > 0; }
    int getNumCells() const noexcept;
    int getGlyphWidth() const noexcept { return strip.getWidth(); }
    int getGlyphHeight() const noexcept { return glyphHeight; }

    // The cell holding a character, or -1 when the strip has no glyph for it.
    int getCell (juce::juce_wchar character) const noexcept;

    void drawGlyph (juce::Graphics& g, juce::juce_wchar character, int x, int y) const;

    // A font whose every character advances exactly one cell and draws
    // nothing, so that a text editor lays out, selects and places its caret
    // cell by cell while the glyphs are copied from the strip on top.
    juce::Font createLayoutFont() const;

private:
    SkinImage strip;
    juce::juce_wchar first = ' ';
    int glyphHeight = 0;
};
