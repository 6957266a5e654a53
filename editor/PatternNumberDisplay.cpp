#include "PatternNumberDisplay.h"

#include "SkinValues.h"

PatternNumberDisplay::PatternNumberDisplay (const juce::String& name)
    : juce::Component (name)
{
    setInterceptsMouseClicks (false, false);
}

PatternNumberDisplay::Range PatternNumberDisplay::readRange (const juce::XmlElement& element, const juce::String& prefix)
{
    if (! element.hasAttribute (prefix + "Min") || ! element.hasAttribute (prefix + "Max"))
        return {};

    return { SkinValues::readInt (element, prefix + "Min"), SkinValues::readInt (element, prefix + "Max") };
}

void PatternNumberDisplay::loadOwnAttributes (const juce::XmlElement& element)
{
    notePattern = readRange (element, "notePattern");
    numericPattern = readRange (element, "numericPattern");
    bankAndSlotPattern = readRange (element, "bankAndSlotPattern");
    slotMax = juce::jmax (1, SkinValues::readInt (element, "slotMax", 16));

    const char* const cellNames[] = { "firstDigit", "secondDigit", "thirdDigit", "fourthDigit" };

    for (size_t i = 0; i < cellX.size(); ++i)
        cellX[i] = element.hasAttribute (cellNames[i]) ? SkinValues::readInt (element, cellNames[i]) : -1;
}

void PatternNumberDisplay::loadGeometry (const juce::XmlElement& element)
{
    auto bounds = loadStripGeometry (element);

    // Cells without a position follow each other one glyph apart.
    for (size_t i = 0; i < cellX.size(); ++i)
        if (cellX[i] < 0)
            cellX[i] = (int) i * getFrameWidth();

    if (hasStrip())
        bounds.setWidth (*std::max_element (cellX.begin(), cellX.end()) + getFrameWidth());

    setBounds (bounds);
}

juce::String PatternNumberDisplay::textFor (int value) const
{
    if (notePattern.contains (value))
    {
        static const char* const names[] = { "C", "C#", "D", "D#", "E", "F", "F#", "G", "G#", "A", "A#", "B" };
        const int octave = (int) std::floor (value / 12.0) - 2;
        return juce::String (names[((value % 12) + 12) % 12]) + juce::String (octave);
    }

    if (numericPattern.contains (value))
        return juce::String (value);

    if (bankAndSlotPattern.contains (value))
    {
        const int offset = value - bankAndSlotPattern.min;
        return juce::String::charToString ((juce::juce_wchar) ('A' + (offset / slotMax) % 26)) + juce::String (offset % slotMax + 1);
    }

    return {};
}

int PatternNumberDisplay::frameOf (juce::juce_wchar c)
{
    if (c >= '0' && c <= '9') return (int) (c - '0');
    if (c >= 'A' && c <= 'Z') return 10 + (int) (c - 'A');
    if (c == '#') return 36;
    if (c == '-') return 37;
    return -1;
}

void PatternNumberDisplay::paint (juce::Graphics& g)
{
    const auto* p = getParameter();

    if (p == nullptr)
        return;

    const auto text = textFor (p->getIntValue()).substring (0, (int) cellX.size());

    if (! hasStrip())
    {
        drawFallback (g, 0.0f);
        return;
    }

    for (int i = 0; i < text.length(); ++i)
    {
        const int frame = frameOf (text[i]);

        if (frame < 0 || frame >= getNumFrames())
            continue;

        juce::Graphics::ScopedSaveState state (g);
        g.setOrigin (cellX[(size_t) i], 0);
        drawFrame (g, frame);
    }
}
