#pragma once

#include <juce_core/juce_core.h>

// A named run of consecutive slots: the groups of a bank partition its slots
// in order, so a group is fully described by its name and its count.
struct PresetGroupRecord
{
    juce::String name;
    int count = 0;
};
