#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

class GFXDisplay;

// What a screen reader makes of a display: its text as the value. A
// read-only display is a label; an editable one takes a new text through the
// value (the preset display renames the preset so). One that opens something
// (the preset display opens the browser) is a combo box whose menu is that.
class DisplayAccessibilityHandler : public juce::AccessibilityHandler
{
public:
    DisplayAccessibilityHandler (GFXDisplay& display, bool opens);

    juce::AccessibleState getCurrentState() const override;

private:
    const bool opens;
};
