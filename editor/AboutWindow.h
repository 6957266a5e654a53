#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

// The about box: the product's name in large type over a few lines of text,
// in a small window of its own that closes with its close button.
namespace AboutWindow
{
    void show (const juce::String& title, const juce::String& text, juce::Component* parent);
}
