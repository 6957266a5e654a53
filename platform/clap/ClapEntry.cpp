// The CLAP entry point: one plug-in, "orlo.quorlane", whose instances are
// the same processor the other formats wrap (see ClapInstance).

#include "ClapInstance.h"

#include <clap/entry.h>
#include <clap/plugin-factory.h>

#include <cstring>

namespace
{
    const char* features[] = { "audio-effect", "reverb", "stereo", nullptr };

    const clap_plugin_descriptor_t descriptor {
        CLAP_VERSION_INIT,
        "orlo.quorlane",
        JucePlugin_Name,
        JucePlugin_Manufacturer,
        JucePlugin_ManufacturerWebsite,
        "",
        "",
        JucePlugin_VersionString,
        JucePlugin_Desc,
        features
    };

    const clap_plugin_factory_t factory {
        [] (const clap_plugin_factory_t*) -> uint32_t { return 1; },
        [] (const clap_plugin_factory_t*, uint32_t index) { return index == 0 ? &descriptor : nullptr; },
        [] (const clap_plugin_factory_t*, const clap_host_t* host, const char* pluginId) -> const clap_plugin_t*
        {
            if (host == nullptr || pluginId == nullptr || std::strcmp (pluginId, descriptor.id) != 0
                || ! clap_version_is_compatible (host->clap_version))
                return nullptr;

            return (new ClapInstance (*host, descriptor))->getPlugin();
        }
    };
}

extern "C" CLAP_EXPORT const clap_plugin_entry_t clap_entry {
    CLAP_VERSION_INIT,
    [] (const char*) { return true; },
    [] {},
    [] (const char* factoryId) -> const void*
    {
        return factoryId != nullptr && std::strcmp (factoryId, CLAP_PLUGIN_FACTORY_ID) == 0 ? &factory : nullptr;
    }
};
