// Controller map files read through MidiControl::loadFile. A refused file
// must leave the map as it was; an accepted one must leave it consistent.
#include "FuzzSupport.h"
#include "framework/MidiControl.h"
#include "tests/support/MidiMapChecks.h"

namespace
{
    struct Reader
    {
        Reader()
        {
            parameters.load ("parameters.xml");
            control.assign (10, parameters.getParameter (6), true);
        }

        ParameterManager parameters;
        MidiControl control { parameters, [] { return juce::String ("Quorlane"); } };
        juce::TemporaryFile file { MidiControl::fileExtension };
    };
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    auto& r = fuzzingInstance<Reader>();
    r.file.getFile().replaceWithData (data, size);

    const auto before = r.control.writeMap ({})->toString();

    if (! r.control.loadFile (r.file.getFile()) && r.control.writeMap ({})->toString() != before)
        fuzzFailure ("a refused map file changed the map");

    if (const auto problem = midiMapProblems (r.control); problem.isNotEmpty())
        fuzzFailure (problem);

    return 0;
}
