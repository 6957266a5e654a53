#pragma once

#include <juce_core/juce_core.h>

// Every image of the skin has a twin drawn at twice the resolution, stored
// under the same file name with "@2x" before the extension: "KnobMain.png"
// and "KnobMain@2x.png". The skin itself names only the first.
namespace DoubleResolution
{
    constexpr int factor = 2;

    // The twin's file name; empty for a name without an extension.
    inline juce::String fileNameFor (const juce::String& fileName)
    {
        const int dot = fileName.lastIndexOfChar ('.');
        return dot < 0 ? juce::String() : fileName.substring (0, dot) + "@2x" + fileName.substring (dot);
    }
}
