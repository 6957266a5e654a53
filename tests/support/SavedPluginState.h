#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

#include <cstring>

// Our PluginState document inside what a host saved (JUCE's VST3 state, an
// LV2 Turtle file, an Ardour session): a base64 token, in JUCE's own form or
// the standard one, whose bytes hold the chunk starting with its magic.
inline std::unique_ptr<juce::XmlElement> pluginStateIn (const juce::String& saved)
{
    for (const auto& token : juce::StringArray::fromTokens (saved, "\"<> \t\r\n", {}))
    {
        juce::MemoryBlock bytes;
        juce::MemoryOutputStream standard;

        if (token.length() < 64)
            continue;

        if (! bytes.fromBase64Encoding (token) && juce::Base64::convertFromBase64 (standard, token))
            bytes = standard.getMemoryBlock();

        const auto* data = static_cast<const char*> (bytes.getData());

        for (size_t i = 0; i + 8 <= bytes.getSize(); ++i)
            if (std::memcmp (data + i, "VC2!", 4) == 0)
                if (auto state = juce::AudioProcessor::getXmlFromBinary (data + i, (int) (bytes.getSize() - i)))
                    if (state->hasTagName ("PluginState"))
                        return state;
    }

    return nullptr;
}
