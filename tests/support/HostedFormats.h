#pragma once

// The VST3 and LV2 builds, loaded through JUCE's own plug-in hosting and made
// where a DAW makes them. Needs a JUCE built with hosting switched on.

#include <juce_audio_processors/juce_audio_processors.h>

#include "Environment.h"

#include <cstdlib>
#include <functional>
#include <memory>
#include <ostream>
#include <thread>
#include <vector>

struct HostedFormat
{
    juce::String name;
    std::function<std::unique_ptr<juce::AudioPluginFormat>()> create;
    juce::String identifier;

    friend void PrintTo (const HostedFormat& f, std::ostream* os) { *os << f.name; }
};

// The formats this build of the tests can host.
inline std::vector<HostedFormat> hostedFormats()
{
    std::vector<HostedFormat> formats {
        { "VST3", [] { return std::make_unique<juce::VST3PluginFormat>(); }, juce::String::fromUTF8 (pluginLocation ("QUORLANE_VST3_PLUGIN", QUORLANE_VST3_PATH).c_str()) }
    };

#ifdef QUORLANE_LV2_DIR // built where LV2 hosts run
    formats.push_back ({ "LV2", [] {
        // The format loads every bundle under ~/.lv2 too, where an installed
        // Quorlane with the same URI would shadow the one just built: it gets
        // an empty home while it starts.
        const juce::TemporaryFile emptyHome;
        emptyHome.getFile().createDirectory();
        const juce::String home = std::getenv ("HOME") != nullptr ? std::getenv ("HOME") : "";
        setenv ("HOME", emptyHome.getFile().getFullPathName().toRawUTF8(), 1);
        auto format = std::make_unique<juce::LV2PluginFormat>();
        setenv ("HOME", home.toRawUTF8(), 1);
        format->searchPathsForPlugins (juce::FileSearchPath (juce::String::fromUTF8 (pluginLocation ("QUORLANE_LV2_FOLDER", QUORLANE_LV2_DIR).c_str())), true, false);
        return std::unique_ptr<juce::AudioPluginFormat> (std::move (format));
    }, "urn:orlo:quorlane" });
#endif

    return formats;
}

// An instance made where a DAW makes it, prepared for 48 kHz and the given
// block size; null when the format finds no plug-in there.
inline std::unique_ptr<juce::AudioPluginInstance> instantiateHosted (const HostedFormat& hosted, int blockSize = 256)
{
    // The format's own creation call. JUCE's synchronous creation, called off
    // this process's message thread, would hand the work to that thread; a
    // DAW makes the instance on a thread of its own, which is not the
    // plug-in's message thread either.
    struct CreationCall : juce::AudioPluginFormat { using juce::AudioPluginFormat::createPluginInstance; };

    auto format = hosted.create();
    juce::OwnedArray<juce::PluginDescription> types;
    format->findAllTypesForFile (types, hosted.identifier);

    if (types.isEmpty())
        return nullptr;

    std::unique_ptr<juce::AudioPluginInstance> instance;
    const auto create = [&]
    {
        (format.get()->*&CreationCall::createPluginInstance) (*types[0], 48000.0, blockSize,
            [&] (std::unique_ptr<juce::AudioPluginInstance> made, const juce::String&) { instance = std::move (made); });
    };

    // Linux hosts make VST3 and LV2 instances on a thread of theirs that the
    // plug-in's own message thread is not; Windows hosts make them on their
    // GUI thread, whose message loop the plug-in's windows then use.
   #if JUCE_LINUX
    std::thread (create).join();
   #else
    create();
   #endif

    if (instance != nullptr)
    {
        instance->enableAllBuses();
        instance->setPlayConfigDetails (2, 2, 48000.0, blockSize);
        instance->prepareToPlay (48000.0, blockSize);
    }

    return instance;
}

// Formats order parameters their own way (LV2 by URI), so tests find them by name.
inline juce::AudioProcessorParameter* parameterNamed (juce::AudioPluginInstance& plugin, const juce::String& name)
{
    const auto& all = plugin.getParameters();
    const auto found = std::find_if (all.begin(), all.end(), [&] (auto* p) { return p->getName (64) == name; });
    return found != all.end() ? *found : nullptr;
}
