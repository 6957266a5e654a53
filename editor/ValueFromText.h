#pragma once

#include <juce_core/juce_core.h>

#include <functional>
#include <optional>

// Turns what a user types for a control ("30", "-3 dB", "120ms") into a
// normalised value, given only the control's display text at any value. The
// first number of the typed text is compared with the first number of the
// display text ("18.2ms (6.2m)" reads as 18.2), so the plug-in needs no
// parser for its units. Text without a number matches a display text that
// starts with it at either end of the range ("-inf" for "-Inf.").
namespace ValueFromText
{
    using DisplayText = std::function<juce::String (float normalisedValue)>;

    // The first decimal number in a text, with its sign.
    std::optional<double> firstNumber (const juce::String& text);

    // The normalised value whose display text comes nearest the typed one;
    // nothing when the typed text says nothing the display texts can match.
    std::optional<float> find (const DisplayText& displayText, const juce::String& typed);
}
