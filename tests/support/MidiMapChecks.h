#pragma once

#include "framework/MidiControl.h"

#include <set>

// What must hold of a controller map whatever was read into it: a parameter
// in at most one slot, only automatable parameters bound, and a count that
// matches the slots. Returns an empty string when all hold.
inline juce::String midiMapProblems (const MidiControl& control)
{
    std::set<const Parameter*> seen;
    int occupied = 0;

    for (int c = 0; c < MidiControl::numControllers; ++c)
    {
        const auto* p = control.getParameterAt (c);

        if (p == nullptr)
            continue;

        ++occupied;

        if (! seen.insert (p).second)
            return p->getName() + " sits in two slots";

        if (! p->isAutomatable())
            return p->getName() + " is bound but not automatable";
    }

    if (occupied != control.getMappedCount())
        return "the count says " + juce::String (control.getMappedCount()) + " but " + juce::String (occupied) + " slots are taken";

    return {};
}
