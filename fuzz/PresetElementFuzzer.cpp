// The single-preset reader (preset files, the default-preset resource, each
// slot of a bank): a refused element leaves the record as it was; a read one
// is a record the manager may hold.
#include "PresetElementFuzzing.h"
#include "presets/Preset.h"

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    const auto& parameters = fuzzingParameters();
    const auto element = parseXmlUtf8 (data, size);

    if (element == nullptr)
        return 0;

    const auto before = fuzzingDefaults();
    auto record = before;

    if (! Preset::read (*element, record, parameters, "Quorlane") && ! (record == before))
        fuzzFailure ("a refused preset changed the record");

    checkRecord (record, "the preset");
    return 0;
}
