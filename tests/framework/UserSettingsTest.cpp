// The user settings file: where new instances start (quality, controller map,
// which bank fills the slots, storing and changing modes), and what a change
// writes back.
#include "engine/Quorlane.h"
#include "tests/support/PluginBlocks.h"
#include "tests/support/ScopedConfigHome.h"

#include <gtest/gtest.h>

TEST (UserSettings, KeywordsChooseWhereNewInstancesStart)
{
    const ScopedConfigHome home;
    home.writeSettings (R"(<QualitySettings default="medium"/><Other default="low"/><QualitySettings default="highest"/>)"
                        "<ResourcesSettings><Presets default='CLEARpresets'/></ResourcesSettings>"
                        "<PresetSettings storing='Automatic' changing='Silent'/>");
    {
        Quorlane plugin;
        EXPECT_EQ (plugin.getDefaultQuality(), 3) << "the last QualitySettings wins";
        EXPECT_EQ (plugin.getCurrentQualityStep(), 3);
        EXPECT_EQ (plugin.getDefaultPresetsMode(), BasePluginOldStyle::clearPresets);
        EXPECT_EQ (plugin.getSlotName (0), "Preset 1");
        EXPECT_EQ (plugin.getStoringMode(), BasePluginOldStyle::automaticStoring);
        EXPECT_EQ (plugin.getChangingType(), BasePluginOldStyle::silentChange);
    }

    // Unknown keywords leave what was read before: the factory presets.
    home.writeSettings (R"(<QualitySettings default="high"/><QualitySettings default="ultra"/><QualitySettings default="HIGHEST"/>)"
                        "<ResourcesSettings><Presets default='userPresets' file='x'/></ResourcesSettings><PresetSettings changing='silent'/>");
    {
        Quorlane plugin;
        EXPECT_EQ (plugin.getDefaultQuality(), 2);
        EXPECT_EQ (plugin.getSlotName (0), "Cristal Cave [d/w]");
        plugin.changeToPreset (32);
        EXPECT_EQ (liveValues (plugin), plugin.getSlot (32)->values) << "a silent change applies at once where nothing plays";
    }

    for (const auto& file : { juce::String ("/no/such/bank.qlprsb"), juce::String() })
    {
        home.writeSettings ("<ResourcesSettings><Presets default='userDefinedPresets' file='" + file + "'/></ResourcesSettings>");
        Quorlane plugin;
        EXPECT_EQ (plugin.getDefaultPresetsMode(), BasePluginOldStyle::userDefinedPresets);
        EXPECT_EQ (plugin.getSlotName (0), "Cristal Cave [d/w]") << file;
    }
}

// A change from the settings page starts later instances (the file's form is
// WrittenDocuments'); the current one keeps its quality, and a project's own
// (empty) controller map replaces the default one.
TEST (UserSettings, ChangesAreSavedForLaterInstances)
{
    const ScopedConfigHome home;
    const auto mapFile = home.getFolder().getChildFile ("faders" + juce::String (MidiControl::fileExtension));
    const auto bankFile = home.getFolder().getChildFile ("mine.qlprsb");
    juce::MemoryBlock projectWithoutMappings;

    {
        Quorlane plugin;
        plugin.getStateInformation (projectWithoutMappings);
        plugin.renameSlot (0, "From my bank");
        ASSERT_TRUE (plugin.saveBankFile (bankFile));
        plugin.getMidiControl().assign (21, plugin.getPluginParameter (18), true);
        ASSERT_TRUE (plugin.getMidiControl().saveFile (mapFile));

        plugin.setDefaultQuality (2);
        plugin.setDefaultQuality (7);
        EXPECT_EQ (plugin.getCurrentQualityStep(), 0);
        plugin.setDefaultMidiMapFile (mapFile);
        plugin.setDefaultPresetsMode (BasePluginOldStyle::userDefinedPresets);
        plugin.setDefaultPresetsFile (bankFile);
    }

    Quorlane plugin;
    EXPECT_EQ (plugin.getDefaultQuality(), 2);
    EXPECT_EQ (plugin.getSlotName (0), "From my bank");
    EXPECT_EQ (plugin.getDefaultMidiMapFile(), mapFile);
    EXPECT_EQ (plugin.getMidiControl().getParameterAt (21), plugin.getPluginParameter (18));

    plugin.setStateInformation (projectWithoutMappings.getData(), (int) projectWithoutMappings.getSize());
    EXPECT_EQ (plugin.getMidiControl().getMappedCount(), 0);
}
