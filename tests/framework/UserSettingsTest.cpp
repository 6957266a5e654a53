#include "engine/Quorlane.h"
#include "tests/support/ScopedConfigHome.h"

#include <gtest/gtest.h>

TEST (UserSettings, QualityKeywordsChooseWhereNewInstancesStart)
{
    const ScopedConfigHome home;

    home.writeSettings (R"(<QualitySettings default="medium"/><Other default="low"/><QualitySettings default="highest"/>)");
    {
        Quorlane plugin;
        EXPECT_EQ (plugin.getDefaultQuality(), 3) << "the last QualitySettings wins";
        EXPECT_NEAR (plugin.getPluginParameter (20)->getNormalisedValue(), 1.0f, 1e-6f);
        EXPECT_EQ (plugin.getCurrentQualityStep(), 3);
    }

    home.writeSettings (R"(<QualitySettings default="high"/><QualitySettings default="ultra"/><QualitySettings default="HIGHEST"/>)");
    {
        Quorlane plugin;
        EXPECT_EQ (plugin.getDefaultQuality(), 2) << "unknown keywords leave the value read before";
    }
}

TEST (UserSettings, ANewDefaultIsSavedForLaterInstancesAndLeavesTheCurrentQuality)
{
    const ScopedConfigHome home;
    Quorlane plugin;

    plugin.setDefaultQuality (2);
    plugin.setDefaultQuality (7);
    EXPECT_EQ (plugin.getCurrentQualityStep(), 0);

    Quorlane next;
    EXPECT_EQ (next.getDefaultQuality(), 2);
    EXPECT_EQ (next.getCurrentQualityStep(), 2);
}

TEST (UserSettings, ADefaultMidiMapStartsEveryInstanceUntilAProjectBringsItsOwn)
{
    const ScopedConfigHome home;
    const auto mapFile = home.getFolder().getChildFile ("faders" + juce::String (MidiControl::fileExtension));
    juce::MemoryBlock projectWithoutMappings;

    {
        Quorlane plugin;
        plugin.getStateInformation (projectWithoutMappings);
        plugin.getMidiControl().assign (21, plugin.getPluginParameter (18), true);
        ASSERT_TRUE (plugin.getMidiControl().saveFile (mapFile));
        plugin.setDefaultMidiMapFile (mapFile);
    }

    Quorlane plugin;
    EXPECT_EQ (plugin.getDefaultMidiMapFile(), mapFile);
    EXPECT_EQ (plugin.getMidiControl().getParameterAt (21), plugin.getPluginParameter (18));

    plugin.setStateInformation (projectWithoutMappings.getData(), (int) projectWithoutMappings.getSize());
    EXPECT_EQ (plugin.getMidiControl().getMappedCount(), 0);
}
