#pragma once

#include "Environment.h"
#include "framework/UserSettingsFolder.h"

#include <juce_core/juce_core.h>

// Points the user settings folder (XDG_CONFIG_HOME, or APPDATA on Windows) at
// a fresh folder for the lifetime of the object, so that plug-in instances
// read and write their user settings there, and puts the previous value back
// afterwards.
class ScopedConfigHome
{
public:
    // Its name has spaces, accents and CJK characters, as user folders on
    // Windows (where the settings folder lies inside the user's) often do.
    ScopedConfigHome()
        : folder (juce::File::getSpecialLocation (juce::File::tempDirectory)
                      .getNonexistentChildFile (juce::CharPointer_UTF8 ("quorlane config Zo\xc3\xab \xc3\x85ngstr\xc3\xb6m \xe5\xb1\xb1\xe7\x94\xb0"), {}, false)),
          previous (juce::SystemStats::getEnvironmentVariable (userSettingsFolderVariable, unset))
    {
        folder.createDirectory();
        setEnvironmentVariable (userSettingsFolderVariable, folder.getFullPathName().toRawUTF8());
    }

    ~ScopedConfigHome()
    {
        setEnvironmentVariable (userSettingsFolderVariable, previous != unset ? previous.toRawUTF8() : nullptr);
        folder.deleteRecursively();
    }

    const juce::File& getFolder() const noexcept { return folder; }

    // Where an instance of the named plug-in keeps its settings.
    juce::File settingsFile (const juce::String& pluginName = "Quorlane") const
    {
        return folder.getChildFile (pluginName).getChildFile (pluginName + ".ini");
    }

    // A settings document of the given elements, as the plug-in writes one.
    void writeSettings (const juce::String& elements) const
    {
        settingsFile().getParentDirectory().createDirectory();
        settingsFile().replaceWithText ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<UserSettings application=\"Quorlane\">"
                                        + elements + "</UserSettings>");
    }

private:
    static constexpr const char* unset = "\x01";
    juce::File folder;
    juce::String previous;

    JUCE_DECLARE_NON_COPYABLE (ScopedConfigHome)
};
