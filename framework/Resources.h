#pragma once

#include <juce_core/juce_core.h>

// The files under resources/ are compiled into the module. A file name finds
// its data by splitting at the last "." into a name and a type, both compared
// without regard to case. A missing name gives empty data, never an error.
namespace Resources
{
    juce::MemoryBlock getData (const juce::String& fileName);
    juce::String getText (const juce::String& fileName);
}
