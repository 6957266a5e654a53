#pragma once

#include <clap/stream.h>
#include <juce_core/juce_core.h>

// The host's state streams may take or give fewer bytes than asked in one
// call; these go on until everything is through, the stream ends or it fails.
namespace ClapStreams
{
    bool writeAll (const clap_ostream_t& stream, const juce::MemoryBlock& data);

    // Reads up to the end of the stream; false on a read error or a stream
    // larger than any state the plug-in writes.
    bool readAll (const clap_istream_t& stream, juce::MemoryBlock& data);
}
