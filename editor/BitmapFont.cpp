#include "BitmapFont.h"

void BitmapFont::setStrip (const SkinImage& newStrip, juce::juce_wchar firstCharacter, int newGlyphHeight)
{
    strip = newStrip;
    first = firstCharacter;
    glyphHeight = juce::jmax (0, newGlyphHeight);
}

int BitmapFont::getNumCells() const noexcept
{
    return strip.isValid() && glyphHeight > 0 ? strip.getHeight() / glyphHeight : 0;
}

int BitmapFont::getCell (juce::juce_wchar character) const noexcept
{
    const auto cell = (juce::int64) character - (juce::int64) first;
    return cell >= 0 && cell < getNumCells() ? (int) cell : -1;
}

void BitmapFont::drawGlyph (juce::Graphics& g, juce::juce_wchar character, int x, int y) const
{
    const int cell = getCell (character);

    if (cell < 0)
        return;

    strip.draw (g, { x, y, getGlyphWidth(), glyphHeight }, { 0, cell * glyphHeight, getGlyphWidth(), glyphHeight });
}

juce::Font BitmapFont::createLayoutFont() const
{
    const float height = (float) juce::jmax (1, glyphHeight);
    const float advance = (float) getGlyphWidth() / height;

    auto* typeface = new juce::CustomTypeface();
    typeface->setCharacteristics ("Bitmap Cells", 1.0f, false, false, ' ');

    for (juce::juce_wchar c = ' '; c < 0x100; ++c)
        typeface->addGlyph (c, juce::Path(), advance);

    return juce::Font (juce::Typeface::Ptr (typeface)).withHeight (height);
}
