// The user settings reader of a real instance, on what the guarded parser
// makes of the bytes, as the settings file is read. Whatever the document
// holds, the default quality stays one of the four steps and the controller
// map it may name stays consistent.
#include "FuzzSupport.h"
#include "engine/Quorlane.h"
#include "framework/XmlReading.h"
#include "tests/support/MidiMapChecks.h"
#include "tests/support/ScopedConfigHome.h"

namespace
{
    Quorlane& plugin()
    {
        // The folder goes at exit; the instance, like JUCE, is left alone.
        static const ScopedConfigHome home;
        return fuzzingInstance<Quorlane>();
    }
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    auto& p = plugin();
    const auto settings = parseXmlUtf8 (data, size);

    if (settings == nullptr)
        return 0;

    if (! p.isUserSettings (*settings))
        return 0;

    p.readUserSettings (*settings);

    if (p.getDefaultQuality() < 0 || p.getDefaultQuality() >= CorvelleEffect::numQualitySteps)
        fuzzFailure ("default quality out of range");

    if (const auto problem = midiMapProblems (p.getMidiControl()); problem.isNotEmpty())
        fuzzFailure (problem);

    return 0;
}
