#pragma once

#include <juce_core/juce_core.h>

// Preset documents are read without regard to the case of tags and attribute
// names; JUCE's own lookups compare exactly.
namespace CaseInsensitiveXml
{
    inline bool isTag (const juce::XmlElement& element, juce::StringRef tag)
    {
        return element.getTagName().equalsIgnoreCase (tag);
    }

    // The index of the named attribute, or -1.
    inline int findAttribute (const juce::XmlElement& element, juce::StringRef name)
    {
        for (int i = 0; i < element.getNumAttributes(); ++i)
            if (element.getAttributeName (i).equalsIgnoreCase (name))
                return i;

        return -1;
    }

    inline bool hasAttribute (const juce::XmlElement& element, juce::StringRef name)
    {
        return findAttribute (element, name) >= 0;
    }

    inline juce::String attribute (const juce::XmlElement& element, juce::StringRef name, const juce::String& fallback = {})
    {
        const int i = findAttribute (element, name);
        return i >= 0 ? element.getAttributeValue (i) : fallback;
    }

    // The first child with the tag, or nullptr.
    inline const juce::XmlElement* findChild (const juce::XmlElement& element, juce::StringRef tag)
    {
        for (auto* child : element.getChildIterator())
            if (isTag (*child, tag))
                return child;

        return nullptr;
    }
}
