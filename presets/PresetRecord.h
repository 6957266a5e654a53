#pragma once

#include <juce_core/juce_core.h>

#include <array>

// One preset as the manager keeps it: a name and the normalised values of the
// presetable parameters 0..19, in index order.
struct PresetRecord
{
    static constexpr int numValues = 20;

    juce::String name { "Preset" };
    std::array<float, numValues> values {};
};
