#pragma once

#include <juce_core/juce_core.h>

#include <cstdlib>
#include <optional>
#include <string>

// Points XDG_CONFIG_HOME at a fresh folder for the lifetime of the object, so
// that plug-in instances read and write their user settings there, and puts
// the previous value back afterwards.
class ScopedConfigHome
{
public:
    ScopedConfigHome()
        : folder (juce::File::getSpecialLocation (juce::File::tempDirectory)
                      .getNonexistentChildFile ("quorlane-config", {}, false)),
          previous (fromEnvironment (std::getenv ("XDG_CONFIG_HOME")))
    {
        folder.createDirectory();
        setenv ("XDG_CONFIG_HOME", folder.getFullPathName().toRawUTF8(), 1);
    }

    ~ScopedConfigHome()
    {
        if (previous.has_value())
            setenv ("XDG_CONFIG_HOME", previous->c_str(), 1);
        else
            unsetenv ("XDG_CONFIG_HOME");

        folder.deleteRecursively();
    }

    const juce::File& getFolder() const noexcept { return folder; }

    // Where an instance of the named plug-in keeps its settings.
    juce::File settingsFile (const juce::String& pluginName = "Quorlane") const
    {
        return folder.getChildFile (pluginName).getChildFile (pluginName + ".ini");
    }

    void writeSettings (const juce::String& text) const
    {
        settingsFile().getParentDirectory().createDirectory();
        settingsFile().replaceWithText (text);
    }

private:
    static std::optional<std::string> fromEnvironment (const char* value)
    {
        return value != nullptr ? std::optional<std::string> (value) : std::nullopt;
    }

    juce::File folder;
    std::optional<std::string> previous;

    JUCE_DECLARE_NON_COPYABLE (ScopedConfigHome)
};
