// The controller map reader, on what the guarded parser makes of the bytes (as
// map files, the default map and plug-in states all are). A refused element
// leaves the map as it was; a read one leaves it consistent, and the map as
// written reads back as itself.
#include "FuzzSupport.h"
#include "framework/MidiControl.h"
#include "framework/XmlReading.h"
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
    };
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    auto& r = fuzzingInstance<Reader>();
    const auto element = parseXmlUtf8 (data, size);

    if (element == nullptr)
        return 0;

    const auto before = r.control.writeMap ({})->toString();
    r.control.readMap (*element);
    const auto written = r.control.writeMap ({});

    if (! MidiControl::acceptsElement (*element) && written->toString() != before)
        fuzzFailure ("a refused map changed the map");

    if (const auto problem = midiMapProblems (r.control); problem.isNotEmpty())
        fuzzFailure (problem);

    r.control.readMap (*written);

    if (r.control.writeMap ({})->toString() != written->toString())
        fuzzFailure ("a written map reads back differently");

    return 0;
}
