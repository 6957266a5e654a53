// Single-preset files read through BasePluginOldStyle::loadPresetFile into the
// current slot.
#include "PresetReaderFuzzing.h"

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    return fuzzPresetReader (data, size, ".qlprs", [] (Quorlane& plugin, const juce::File& file)
    {
        return plugin.loadPresetFile (file, (int) plugin.getCurrentPresetIndex());
    });
}
