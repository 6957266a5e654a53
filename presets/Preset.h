#pragma once

#include "PresetRecord.h"

class ParameterManager;

// The `Preset` element: a preset's name and one `param` (name, value) per
// presetable parameter. It stands alone as a preset file, sits inside a bank's
// groups and is the root of the default-preset resource.
namespace Preset
{
    constexpr const char* tag = "Preset";
    constexpr const char* unnamed = "unnamed";

    // A `Preset` whose `application` names this plug-in (both without regard to case).
    bool accepts (const juce::XmlElement& element, const juce::String& application);

    // Reads an accepted element into the record: its name ("unnamed" when
    // absent, cut to the longest a slot keeps) and the values of the presetable parameters it names. Values it
    // does not mention stay as they were; a value is clamped to 0..1 (NaN
    // reads as 0). Returns false, changing nothing, for an element it refuses.
    bool read (const juce::XmlElement& element, PresetRecord& record,
               const ParameterManager& parameters, const juce::String& application);

    std::unique_ptr<juce::XmlElement> write (const PresetRecord& record,
                                             const ParameterManager& parameters, const juce::String& application);
}
