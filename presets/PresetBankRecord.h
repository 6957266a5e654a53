#pragma once

#include "PresetGroupRecord.h"
#include "PresetRecord.h"

#include <vector>

// A whole bank: its name, the 128 slots and the groups that partition them.
struct PresetBankRecord
{
    static constexpr int numSlots = 128;
    static constexpr const char* defaultName = "Preset Bank";
    static constexpr const char* unusedGroupName = "Not used";

    juce::String name { defaultName };
    std::array<PresetRecord, numSlots> slots;
    std::vector<PresetGroupRecord> groups;

    // Every slot named "Preset <n>" (one-based) with the given values, and a
    // single "Not used" group over all of them. The bank keeps its name.
    void reset (const PresetRecord& defaults)
    {
        for (int i = 0; i < numSlots; ++i)
            slots[(size_t) i] = { "Preset " + juce::String (i + 1), defaults.values };

        groups = { { unusedGroupName, numSlots } };
    }
};
