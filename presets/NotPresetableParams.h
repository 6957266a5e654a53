#pragma once

#include <juce_core/juce_core.h>

class ParameterManager;

// The `NotPresetableParams` element: the values of the parameters that
// presets never hold (from index 20 on), each as a `param` (name, value).
namespace NotPresetableParams
{
    constexpr const char* tag = "NotPresetableParams";
    constexpr const char* olderTag = "NotPresetParams";

    bool accepts (const juce::XmlElement& element);

    // Sets each named parameter of the given index range; other names are
    // skipped. Returns false, changing nothing, for an element it refuses.
    bool read (const juce::XmlElement& element, ParameterManager& parameters, uint32_t firstIndex, int count);

    std::unique_ptr<juce::XmlElement> write (const ParameterManager& parameters, uint32_t firstIndex, int count);
}
