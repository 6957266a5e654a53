#pragma once

#include "FuzzSupport.h"
#include "engine/Quorlane.h"
#include "tests/support/PresetBankChecks.h"

// One input of a preset-file reader: the bytes become a file with the given
// extension, which `load` reads into a real instance. A refused file must
// leave the bank, the selection and the live values as they were; whatever
// is read must leave the bank sound.
template <typename Load>
int fuzzPresetReader (const uint8_t* data, size_t size, const char* extension, Load&& load)
{
    initialiseJuceForFuzzing();
    static auto* plugin = new Quorlane();
    static auto* file = new juce::TemporaryFile (extension);

    file->getFile().replaceWithData (data, size);
    const auto before = presetManagerSnapshot (*plugin);

    if (! load (*plugin, file->getFile()) && presetManagerSnapshot (*plugin) != before)
        fuzzFailure (juce::String ("a refused ") + extension + " file changed the presets");

    if (const auto problems = presetBankProblems (*plugin); problems.isNotEmpty())
        fuzzFailure (problems);

    return 0;
}
