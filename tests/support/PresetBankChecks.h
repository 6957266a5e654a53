#pragma once

#include "presets/BasePluginOldStyle.h"

// What must hold of a preset manager whatever was read into it: groups with
// no negative count that cover exactly the 128 slots, and every slot value in
// 0..1. Returns an empty string when all hold.
inline juce::String presetBankProblems (const BasePluginOldStyle& plugin)
{
    juce::String problems;
    int covered = 0;

    for (const auto& group : plugin.getGroups())
    {
        covered += group.count;

        if (group.count < 0)
            problems << "group " << group.name << " counts " << group.count << "\n";
    }

    if (covered != BasePluginOldStyle::numSlots)
        problems << "the groups cover " << covered << " slots\n";

    for (int slot = 0; slot < BasePluginOldStyle::numSlots; ++slot)
    {
        const auto record = plugin.getSlot (slot);

        for (auto value : record->values)
            if (! (value >= 0.0f && value <= 1.0f))
                problems << "slot " << slot << " holds " << value << "\n";
    }

    return problems;
}
