// The user settings file, read by a real instance from a settings folder of
// its own. Whatever the file holds, the default quality stays one of the four
// steps; a refused file changes no setting at all.
#include "FuzzSupport.h"
#include "engine/Quorlane.h"
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
    p.getUserSettingsFile().getParentDirectory().createDirectory();
    p.getUserSettingsFile().replaceWithData (data, size);

    const auto quality = p.getDefaultQuality();
    const auto mapFile = p.getDefaultMidiMapFile();

    if (! p.loadUserSettings() && (p.getDefaultQuality() != quality || p.getDefaultMidiMapFile() != mapFile))
        fuzzFailure ("a refused settings file changed a setting");

    if (p.getDefaultQuality() < 0 || p.getDefaultQuality() >= CorvelleEffect::numQualitySteps)
        fuzzFailure ("default quality out of range");

    if (const auto problem = midiMapProblems (p.getMidiControl()); problem.isNotEmpty())
        fuzzFailure (problem);

    return 0;
}
