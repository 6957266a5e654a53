#pragma once

#include <juce_core/juce_core.h>

// Frames document text the way AudioProcessor::copyXmlToBinary does (magic
// number, length, text, terminating zero), so that any text, well-formed or
// not, can be handed to setStateInformation.
inline juce::MemoryBlock stateChunkFromText (const void* text, size_t numBytes)
{
    juce::MemoryOutputStream out;
    out.writeInt (0x21324356);
    out.writeInt ((int) numBytes);
    out.write (text, numBytes);
    out.writeByte (0);
    return out.getMemoryBlock();
}
