#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

// JUCE's own buttons click on Return only. Space, which keyboard users
// expect as well, reaches the window unused; the window hands it here.
namespace KeyboardClick
{
    // Clicks the focused button for a plain Space; true when it did.
    bool clickFocusedButton (const juce::KeyPress& key);
}
