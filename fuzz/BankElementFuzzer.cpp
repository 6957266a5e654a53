// The bank reader (bank files, the factory bank, the bank in a plug-in
// state): a refused element leaves the bank as it was; a read one has groups
// that cover the 128 slots exactly, none negative, and sound slots.
#include "PresetElementFuzzing.h"
#include "presets/PresetBank.h"

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    const auto& parameters = fuzzingParameters();
    const auto element = parseXmlUtf8 (data, size);

    if (element == nullptr)
        return 0;

    const auto defaults = fuzzingDefaults();
    PresetBankRecord bank;
    bank.reset (defaults);
    bank.name = "Before";

    if (! PresetBank::read (*element, bank, defaults, parameters, "Quorlane"))
    {
        if (bank.name != "Before" || bank.groups.size() != 1 || ! (bank.slots[0] == PresetRecord { "Preset 1", defaults.values }))
            fuzzFailure ("a refused bank changed the bank");

        return 0;
    }

    int covered = 0;

    for (const auto& group : bank.groups)
    {
        if (group.count < 0)
            fuzzFailure ("group " + group.name + " counts " + juce::String (group.count));

        covered += group.count;
    }

    if (covered != PresetBankRecord::numSlots)
        fuzzFailure ("the groups cover " + juce::String (covered) + " slots");

    for (const auto& slot : bank.slots)
        checkRecord (slot, "slot " + slot.name);

    return 0;
}
