// The host's state chunk, given to a real instance through setStateInformation:
// each input once as raw chunk bytes and once as document text in the chunk's
// framing. A chunk that is not this plug-in's state must leave the whole state
// as it was; any accepted one must leave every value in range and the
// controller map consistent.
#include "FuzzSupport.h"
#include "engine/Quorlane.h"
#include "framework/XmlReading.h"
#include "tests/support/MidiMapChecks.h"
#include "tests/support/StateChunk.h"

#include <cmath>

namespace
{
    Quorlane& plugin()
    {
        return fuzzingInstance<Quorlane>();
    }

    juce::String stateText()
    {
        return plugin().buildState()->toString();
    }

    void checkStillConsistent()
    {
        for (auto* p : plugin().getParameterManager().getAllParameters())
        {
            const auto value = p->getNormalisedValue();

            if (! (std::isfinite (value) && value >= 0.0f && value <= 1.0f))
                fuzzFailure (p->getName() + " left out of range");
        }

        if (const auto problem = midiMapProblems (plugin().getMidiControl()); problem.isNotEmpty())
            fuzzFailure (problem);
    }
}

extern "C" int LLVMFuzzerTestOneInput (const uint8_t* data, size_t size)
{
    plugin().setStateInformation (data, (int) size);
    const auto before = stateText();

    const auto chunk = stateChunkFromText (data, size);
    const auto document = parseXmlUtf8 (data, size);
    const bool acceptable = document != nullptr && plugin().isPluginState (*document);

    plugin().setStateInformation (chunk.getData(), (int) chunk.getSize());

    if (! acceptable && stateText() != before)
        fuzzFailure ("a refused chunk changed the state");

    checkStillConsistent();
    return 0;
}
