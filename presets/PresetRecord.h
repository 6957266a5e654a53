#pragma once

#include <juce_core/juce_core.h>

#include <array>

// One preset as the manager keeps it: a name and the normalised values of the
// presetable parameters 0..19, in index order.
struct PresetRecord
{
    static constexpr int numValues = 20;

    // A slot's name holds at most this many characters (not bytes), as the
    // "Current Preset Name" parameter that shows it does.
    static constexpr int maxNameLength = 32;
    static juce::String fitName (const juce::String& name) { return name.substring (0, maxNameLength); }

    juce::String name { "Preset" };
    std::array<float, numValues> values {};
};
