// The readers of outside documents (state chunk, controller map file, user
// settings) fed the corpus in tests/corpus: each reader's "refused" folder
// holds documents that must change nothing, its "tolerated" folder accepted
// documents full of values and names that must be skipped or contained.
#include "engine/Quorlane.h"
#include "tests/support/Corpus.h"
#include "tests/support/MidiMapChecks.h"
#include "tests/support/ScopedConfigHome.h"
#include "tests/support/StateChunk.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

namespace
{
    // An instance whose every part of the project state differs from a new one's.
    void giveProjectState (Quorlane& plugin)
    {
        plugin.getPluginParameter (0)->setNormalisedValue (0.25f, ChangeOrigin::editor);
        plugin.getPluginParameter (18)->setNormalisedValue (0.625f, ChangeOrigin::editor);
        plugin.getMidiControl().assign (10, plugin.getPluginParameter (6), true);
        plugin.getPluginParameter (20)->setNormalisedValue (2 * CorvelleEffect::qualityStepSize, ChangeOrigin::editor);
    }

    juce::String stateText (Quorlane& plugin) { return plugin.buildState()->toString(); }

    // Hands the file's bytes, whatever they are, to the instance as a state chunk.
    void restoreFile (Quorlane& plugin, const juce::File& file)
    {
        juce::MemoryBlock bytes;
        file.loadFileAsData (bytes);
        const auto chunk = stateChunkFromText (bytes.getData(), bytes.getSize());
        plugin.setStateInformation (chunk.getData(), (int) chunk.getSize());
    }

    juce::String deeplyNested (const std::string& root, size_t depth)
    {
        std::string text = "<" + root + " application=\"Quorlane\">";
        for (size_t i = 0; i < depth; ++i) text += "<a>";
        for (size_t i = 0; i < depth; ++i) text += "</a>";
        return text + "</" + root + ">";
    }
}

TEST (BadInput, RefusedStateChunksLeaveTheWholeStateInPlace)
{
    Quorlane plugin;
    giveProjectState (plugin);
    const auto before = stateText (plugin);

    auto files = corpusFiles ("state", "refused");
    ASSERT_GE (files.size(), 8);
    const juce::TemporaryFile deep;
    ASSERT_TRUE (deep.getFile().replaceWithText (deeplyNested ("PluginState", 300000)));
    files.add (deep.getFile());

    for (const auto& file : files)
    {
        restoreFile (plugin, file);
        EXPECT_EQ (stateText (plugin), before) << file.getFileName();
    }

    // Raw bytes that are no chunk at all, and cuts through a real chunk.
    juce::MemoryBlock good;
    plugin.getStateInformation (good);

    for (const auto& bytes : { juce::MemoryBlock ("junk", 4), juce::MemoryBlock (good.getData(), 8) })
        plugin.setStateInformation (bytes.getData(), (int) bytes.getSize());

    plugin.setStateInformation (nullptr, 100);

    // Spread cuts, each also just before the next '>', where a cut end tag
    // would otherwise pass for a complete one.
    const auto* bytes = static_cast<const char*> (good.getData());

    for (size_t step = 0; step < 40; ++step)
    {
        const auto spread = 9 + (good.getSize() - 10) * step / 40;
        const auto* nextClose = std::strchr (bytes + spread, '>');

        for (const auto length : { spread, nextClose != nullptr ? (size_t) (nextClose - bytes) : spread })
        {
            plugin.setStateInformation (bytes, (int) length);
            ASSERT_EQ (stateText (plugin), before) << "cut at " << length;
        }
    }
}

TEST (BadInput, AcceptedStateChunksKeepEveryValueInItsRange)
{
    auto files = corpusFiles ("state", "tolerated");
    ASSERT_GE (files.size(), 3);

    for (const auto& file : files)
    {
        Quorlane plugin;
        giveProjectState (plugin);
        restoreFile (plugin, file);

        for (auto* p : plugin.getParameterManager().getAllParameters())
        {
            const auto value = p->getNormalisedValue();
            EXPECT_TRUE (std::isfinite (value) && value >= 0.0f && value <= 1.0f) << file.getFileName() << ": " << p->getName() << " = " << value;
        }

        EXPECT_EQ (midiMapProblems (plugin.getMidiControl()), "") << file.getFileName();
        EXPECT_EQ (plugin.getCurrentQualityStep(), 2) << file.getFileName() << ": no valid quality keyword in it";
    }
}

TEST (BadInput, RefusedMapFilesChangeNothingAndAcceptedOnesBindOnlyWhatCanBeBound)
{
    ParameterManager parameters;
    parameters.load ("parameters.xml");
    MidiControl control { parameters, [] { return juce::String ("Quorlane"); } };
    control.assign (10, parameters.getParameter (6), true);

    const juce::TemporaryFile deep (MidiControl::fileExtension);
    ASSERT_TRUE (deep.getFile().replaceWithText (deeplyNested ("MidiControlMap", 300000)));
    auto refused = corpusFiles ("midimap", "refused");
    refused.addArray ({ deep.getFile(), juce::File ("/") });

    for (const auto& file : refused)
    {
        EXPECT_FALSE (control.loadFile (file)) << file.getFileName();
        EXPECT_EQ (control.getMappedCount(), 1) << file.getFileName();
        EXPECT_EQ (control.getParameterAt (10), parameters.getParameter (6)) << file.getFileName();
    }

    for (const auto& file : corpusFiles ("midimap", "tolerated"))
    {
        control.assign (10, parameters.getParameter (6), true);
        EXPECT_TRUE (control.loadFile (file)) << file.getFileName();
        EXPECT_EQ (midiMapProblems (control), "") << file.getFileName();
        EXPECT_EQ (control.getParameterAt (10), nullptr) << file.getFileName() << ": a map replaces the whole map";
    }
}

TEST (BadInput, MissingUnreadableOrOddSettingsLeaveTheDefaults)
{
    const ScopedConfigHome home;
    {
        Quorlane plugin;
        EXPECT_EQ (plugin.getDefaultQuality(), 0) << "no settings file yet";
    }

    const auto refused = corpusFiles ("settings", "refused");
    auto files = refused;
    files.addArray (corpusFiles ("settings", "tolerated"));

    for (const auto& file : files)
    {
        home.settingsFile().getParentDirectory().createDirectory();
        ASSERT_TRUE (file.copyFileTo (home.settingsFile()));
        Quorlane plugin;

        EXPECT_EQ (plugin.getDefaultQuality(), 0) << file.getFileName();
        EXPECT_EQ (plugin.getCurrentQualityStep(), 0) << file.getFileName();
        EXPECT_EQ (plugin.getMidiControl().getMappedCount(), 0) << file.getFileName();

        if (refused.contains (file))
        {
            EXPECT_EQ (plugin.getDefaultMidiMapFile().getFullPathName(), "") << file.getFileName();
        }
    }
}
