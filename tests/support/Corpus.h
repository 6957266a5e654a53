#pragma once

#include <juce_core/juce_core.h>

// The documents in tests/corpus/<reader>/<group>, in name order. Each reader
// has a "refused" group (nothing may change) and a "tolerated" one (accepted,
// with whatever is unusable skipped or contained).
inline juce::Array<juce::File> corpusFiles (const juce::String& reader, const juce::String& group)
{
    auto files = juce::File (QUORLANE_CORPUS_DIR).getChildFile (reader).getChildFile (group)
                     .findChildFiles (juce::File::findFiles, false, "*.xml");
    files.sort();
    return files;
}
