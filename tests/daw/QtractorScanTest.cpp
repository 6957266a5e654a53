// The CLAP build in Debian's Qtractor, as far as Qtractor runs without a
// display or a JACK server: its plug-in scanner, the program Qtractor runs on
// every plug-in file it finds, opens the build through clap_entry, makes and
// initialises an instance and lists what Qtractor's plug-in list shows.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <unistd.h>

namespace
{
    const char* const scanner = "/usr/lib/x86_64-linux-gnu/qtractor/qtractor_plugin_scan";

    // The scanner's answer for one CLAP file: one line, fields apart by '|'.
    std::vector<std::string> scan (const std::string& plugin, const std::filesystem::path& settings)
    {
        const auto command = "printf 'CLAP:%s\\n' '" + plugin + "' | XDG_CONFIG_HOME='" + settings.string() + "' timeout 60 "
                             + scanner + " 2>/dev/null";
        std::vector<std::string> fields;
        char line[4096] {};

        if (auto* pipe = popen (command.c_str(), "r"))
        {
            std::istringstream first (fgets (line, sizeof (line), pipe) != nullptr ? std::string (line, std::strcspn (line, "\n")) : "");
            pclose (pipe);

            for (std::string field; std::getline (first, field, '|');)
                fields.push_back (field);
        }

        return fields;
    }
}

// Name, stereo audio in and out, one MIDI input, twenty parameters, and the
// editor, extensions (state) and real-time processing Qtractor looks for.
TEST (QtractorScan, ListsTheClapBuildAsAStereoEffectWithItsEditorAndParameters)
{
    ASSERT_EQ (access (scanner, X_OK), 0) << "Qtractor is not installed (`make test` installs Debian's qtractor)";
    const auto settings = std::filesystem::temp_directory_path() / ("quorlane-qtractor-" + std::to_string (getpid()));
    std::filesystem::create_directories (settings);

    const auto fields = scan (QUORLANE_CLAP_PATH, settings);
    std::filesystem::remove_all (settings);

    // Type, name, audio inputs:outputs, MIDI inputs:outputs, parameters
    // (in:out), what it has, and the file.
    ASSERT_GE (fields.size(), 7u) << "the scanner listed nothing";
    EXPECT_EQ (std::vector<std::string> (fields.begin(), fields.begin() + 7),
               (std::vector<std::string> { "CLAP", "Quorlane", "2:2", "1:0", "20:0", "GUI,EXT,RT", QUORLANE_CLAP_PATH }));
}
