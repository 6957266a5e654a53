#pragma once

#include "Environment.h"
#include "WindowManagerAtoms.h"
#include "framework/UserSettingsFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>

// For suites that load a built plug-in as a host process does: the plug-in
// reads its user settings from a fresh folder of the run's own (never the
// real user's, nor a folder the environment names), and the window
// manager's atoms exist before any editor opens. Registered once per suite
// binary with ::testing::AddGlobalTestEnvironment.
class HostProcess : public ::testing::Environment
{
public:
    void SetUp() override
    {
        createWindowManagerAtoms();
        folder() = std::filesystem::temp_directory_path() / ("quorlane-host-" + std::to_string (std::random_device()()));
        ASSERT_TRUE (std::filesystem::create_directory (folder()));
        setEnvironmentVariable (userSettingsFolderVariable, (const char*) folder().u8string().c_str());
    }

    void TearDown() override { std::filesystem::remove_all (folder()); }

    // Where the plug-in reads its user settings in this process.
    static const std::filesystem::path& settingsFolder() { return folder(); }

private:
    static std::filesystem::path& folder()
    {
        static std::filesystem::path path;
        return path;
    }
};
