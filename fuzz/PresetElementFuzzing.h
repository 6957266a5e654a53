#pragma once

#include "FuzzSupport.h"
#include "framework/ParameterManager.h"
#include "framework/XmlReading.h"
#include "presets/PresetBankRecord.h"

// The preset readers work on parsed documents; the fuzzers hand them what the
// guarded parser makes of the bytes, as every file, resource and state does,
// without building a plug-in per input.
inline const ParameterManager& fuzzingParameters()
{
    struct Loaded
    {
        Loaded() { parameters.load ("parameters.xml"); }
        ParameterManager parameters;
    };

    return fuzzingInstance<Loaded>().parameters;
}

// A slot as the manager may hold it: a name no longer than a slot keeps and
// every value in 0..1.
inline void checkRecord (const PresetRecord& record, const juce::String& where)
{
    if (record.name.length() > PresetRecord::maxNameLength)
        fuzzFailure (where + " has a name of " + juce::String (record.name.length()) + " characters");

    for (auto value : record.values)
        if (! (value >= 0.0f && value <= 1.0f))
            fuzzFailure (where + " holds " + juce::String (value));
}

inline bool operator== (const PresetRecord& a, const PresetRecord& b) { return a.name == b.name && a.values == b.values; }

inline PresetRecord fuzzingDefaults()
{
    PresetRecord record { "Defaults", {} };
    record.values.fill (0.25f);
    return record;
}
