#include "UserSettingsFolder.h"

#include <juce_core/juce_core.h>

juce::File userSettingsFolder()
{
    const auto folder = juce::SystemStats::getEnvironmentVariable (userSettingsFolderVariable, {});

    return juce::File::isAbsolutePath (folder) ? juce::File (folder)
                                               : juce::File::getSpecialLocation (juce::File::userApplicationDataDirectory);
}
