#include "ClapStreams.h"

namespace
{
    constexpr size_t largestState = size_t (64) << 20;
    constexpr size_t readChunk = 16384;
}

bool ClapStreams::writeAll (const clap_ostream_t& stream, const juce::MemoryBlock& data)
{
    const auto* bytes = static_cast<const char*> (data.getData());
    size_t written = 0;

    while (written < data.getSize())
    {
        const auto n = stream.write (&stream, bytes + written, data.getSize() - written);

        if (n <= 0)
            return false;

        written += (size_t) n;
    }

    return true;
}

bool ClapStreams::readAll (const clap_istream_t& stream, juce::MemoryBlock& data)
{
    data.reset();
    char buffer[readChunk];

    for (;;)
    {
        const auto n = stream.read (&stream, buffer, sizeof (buffer));

        if (n == 0)
            return true;

        if (n < 0 || (size_t) n > sizeof (buffer) || data.getSize() + (size_t) n > largestState)
            return false;

        data.append (buffer, (size_t) n);
    }
}
