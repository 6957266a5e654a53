#pragma once

#include "PresetBankRecord.h"

class ParameterManager;

// The `PresetBank` element: the bank's name and its `PresetGroup` elements,
// each holding the `Preset` elements of its consecutive slots.
namespace PresetBank
{
    constexpr const char* tag = "PresetBank";
    constexpr const char* groupTag = "PresetGroup";

    bool accepts (const juce::XmlElement& element);

    // Reads an accepted element into the bank. The bank is first reset to the
    // defaults; the groups then fill the slots in order, a group without a name
    // becoming "group <n>". Presets beyond the last slot, and elements that are
    // not accepted presets, are dropped; slots left over form a last group
    // "Not used". Returns false, changing nothing, for an element it refuses.
    bool read (const juce::XmlElement& element, PresetBankRecord& bank, const PresetRecord& defaults,
               const ParameterManager& parameters, const juce::String& application);

    std::unique_ptr<juce::XmlElement> write (const PresetBankRecord& bank,
                                             const ParameterManager& parameters, const juce::String& application);
}
