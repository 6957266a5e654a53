#include "Resources.h"

#include "QuorlaneBinaryData.h"

namespace
{
    struct NameAndType
    {
        juce::String name, type;
    };

    // A name without a "." has no type and finds nothing.
    bool split (const juce::String& fileName, NameAndType& result)
    {
        const int dot = fileName.lastIndexOfChar ('.');

        if (dot < 0)
            return false;

        result = { fileName.substring (0, dot), fileName.substring (dot + 1) };
        return true;
    }
}

juce::MemoryBlock Resources::getData (const juce::String& fileName)
{
    NameAndType wanted;

    if (! split (fileName, wanted))
        return {};

    for (int i = 0; i < QuorlaneBinaryData::namedResourceListSize; ++i)
    {
        NameAndType candidate;

        if (! split (QuorlaneBinaryData::originalFilenames[i], candidate))
            continue;

        if (candidate.name.equalsIgnoreCase (wanted.name) && candidate.type.equalsIgnoreCase (wanted.type))
        {
            int size = 0;

            if (const char* data = QuorlaneBinaryData::getNamedResource (QuorlaneBinaryData::namedResourceList[i], size))
                return juce::MemoryBlock (data, (size_t) size);

            return {};
        }
    }

    return {};
}

juce::String Resources::getText (const juce::String& fileName)
{
    const auto data = getData (fileName);
    return data.isEmpty() ? juce::String() : juce::String::createStringFromData (data.getData(), (int) data.getSize());
}
