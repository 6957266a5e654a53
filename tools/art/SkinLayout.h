#pragma once

#include "PixelFont.h"

// The one table the panel is laid out from: the background draws its
// sections, labels and display windows from it and skin.xml is written from
// it, so the two always agree.
namespace SkinLayout
{
    constexpr int panelWidth = 633, panelHeight = 207;
    constexpr int headerHeight = 35;    // the band holding the name, the preset controls and the maker's mark
    constexpr int knobFrames = 61, buttonFrames = 2, meterFrames = 12;

    enum class Kind { Knob, Button, Display, DisplayFloat, Animation };

    // What a button's key shows: its legend, an arrow, the options gear or the product's name.
    enum class Face { Legend, LeftArrow, RightArrow, UpArrow, DownArrow, Gear, Wordmark };

    // One film strip (or font strip) and the frame size the controls show.
    struct Strip
    {
        const char* resource;
        int frameWidth, frameHeight, frames;
    };

    // The four knob strips, one per size.
    extern const Strip mainKnob, eqKnob, mixerKnob, outputKnob;

    // The events a display's keys fire: the arrows step, F4 opens.
    struct KeyEvents
    {
        const char* previous;
        const char* next;
        const char* open;
    };

    // Listed in reading order, which is also the order the Tab key takes.
    struct Control
    {
        Kind kind;
        const char* name;
        const char* target;     // the parameter a knob, display or meter shows; the event a button fires
        const Strip* strip;
        juce::Rectangle<int> bounds;    // a strip's frame size, or a display's own size
        const char* label;              // under a knob or meter, above a display, on a button's key
        Face face = Face::Legend;
        const char* ctrlEvent = "";     // a button's Ctrl-click event
        bool autorepeat = false;
        const KeyEvents* keyEvents = nullptr;   // a display's
    };

    struct Section
    {
        const char* title;
        juce::Rectangle<int> area;
        int dividerY = 0;   // an engraved rule across the plate at this row; 0 for none
    };

    const std::vector<Control>& controls();
    const std::vector<Section>& sections();

    // Where the maker's name is set in the header.
    extern const juce::Rectangle<int> makerMark;

    // The font strip every display draws from: one frame per glyph.
    extern const Strip font;
    constexpr char fontFirstCharacter = (char) PixelFont::firstCode;
    constexpr const char* displayCaretColour = "FFBEF6FF";
    constexpr const char* displayBackgroundColour = "FF232224";
}
