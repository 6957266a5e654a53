#pragma once

#include <filesystem>
#include <fstream>
#include <string>

// User settings that new instances start with, for as long as it lives: the
// settings document of the plug-in in `settingsFolder` (the folder the
// process points the plug-in at), removed afterwards. For tests that load a
// built plug-in and so cannot link the framework's own settings code.
struct ScopedSettingsFile
{
    ScopedSettingsFile (const std::filesystem::path& settingsFolder, const std::string& document)
        : file (settingsFolder / "Quorlane" / "Quorlane.ini")
    {
        std::filesystem::create_directories (file.parent_path());
        std::ofstream (file) << document;
    }

    ~ScopedSettingsFile() { std::filesystem::remove (file); }

    ScopedSettingsFile (const ScopedSettingsFile&) = delete;
    ScopedSettingsFile& operator= (const ScopedSettingsFile&) = delete;

    const std::filesystem::path file;
};

// The value a saved state keeps for a parameter in its current preset: the
// n-th Preset of the bank, n being the state's current preset; -1 when the
// state has none.
inline double storedInCurrentPreset (const std::string& state, const std::string& parameter)
{
    const auto presets = state.find ("<PresetsState");
    const auto current = state.find ("currentPreset=\"", presets);

    if (presets == std::string::npos || current == std::string::npos)
        return -1.0;

    auto at = state.find ("<PresetBank", presets);

    for (int n = std::stoi (state.substr (current + 15)); at != std::string::npos && n >= 0; --n)
        at = state.find ("<Preset ", at + 1);

    const auto end = state.find ("</Preset>", at);
    const auto param = state.find ("name=\"" + parameter + "\" value=\"", at);

    if (at == std::string::npos || param == std::string::npos || param > end)
        return -1.0;

    return std::stod (state.substr (param + parameter.size() + 15));
}
