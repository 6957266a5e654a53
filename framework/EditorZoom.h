#pragma once

#include <juce_core/juce_core.h>

#include <algorithm>
#include <array>

// The user's zoom of the editor, in percent of its skin's size, on top of
// whatever scale the host or the desktop applies.
namespace EditorZoom
{
    inline constexpr std::array<int, 4> steps { 100, 125, 150, 200 };
    constexpr int defaultPercent = 100;

    inline bool isStep (int percent)
    {
        return std::find (steps.begin(), steps.end(), percent) != steps.end();
    }

    // A zoom read from the settings file: one of the steps, else the default.
    inline int fromText (const juce::String& text)
    {
        const auto trimmed = text.trim();
        const int percent = trimmed.getIntValue();
        return trimmed.containsOnly ("0123456789") && isStep (percent) ? percent : defaultPercent;
    }
}
