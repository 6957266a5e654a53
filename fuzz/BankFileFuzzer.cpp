// Bank files read through BasePluginOldStyle::loadBankFile.
#include "PresetReaderFuzzing.h"

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    return fuzzPresetReader (data, size, ".qlprsb", [] (Quorlane& plugin, const juce::File& file)
    {
        return plugin.loadBankFile (file);
    });
}
