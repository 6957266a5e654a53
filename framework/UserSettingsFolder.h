#pragma once

namespace juce
{
    class File;
}

// The environment variable that names the folder where every application
// keeps its per-user settings: the roaming application data folder on
// Windows, the XDG configuration folder elsewhere.
#if defined(_WIN32)
inline constexpr const char* userSettingsFolderVariable = "APPDATA";
#else
inline constexpr const char* userSettingsFolderVariable = "XDG_CONFIG_HOME";
#endif

// That folder: the variable's value when it is an absolute path, otherwise
// the system's own (%APPDATA%, or ~/.config). JUCE's config folder on Linux
// looks only at ~/.config/user-dirs.dirs, never at the environment, so the
// variable is read here; a relative value is ignored, as the XDG rules ask.
juce::File userSettingsFolder();
