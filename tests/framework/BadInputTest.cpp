// The readers of outside documents (state chunk, program chunk, controller
// map, preset and bank files, user settings) fed the corpus in tests/corpus:
// each reader's "refused" documents must change nothing; its "tolerated" ones
// are accepted, with whatever is unusable skipped or contained.
#include "engine/Quorlane.h"
#include "tests/support/Corpus.h"
#include "tests/support/MidiMapChecks.h"
#include "tests/support/PresetBankChecks.h"
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
        plugin.changeToPreset (5);
        plugin.renameSlot (5, "Mine");
        plugin.getPluginParameter (0)->setNormalisedValue (0.25f, ChangeOrigin::editor);
        plugin.getPluginParameter (18)->setNormalisedValue (0.625f, ChangeOrigin::editor);
        plugin.getMidiControl().assign (10, plugin.getPluginParameter (6), true);
        plugin.getPluginParameter (20)->setNormalisedValue (2 * CorvelleEffect::qualityStepSize, ChangeOrigin::editor);
    }

    juce::String stateText (Quorlane& plugin) { return plugin.buildState()->toString(); }

    juce::MemoryBlock chunkOf (const juce::File& file)
    {
        juce::MemoryBlock bytes;
        file.loadFileAsData (bytes);
        return stateChunkFromText (bytes.getData(), bytes.getSize());
    }

    // How a document reaches each reader; the chunks report nothing back.
    struct Reader
    {
        const char* folder;
        const char* root;
        bool reports;
        bool (*read) (Quorlane&, const juce::File&);
    };

    const Reader readers[] = {
        { "state", "PluginState", false, [] (Quorlane& p, const juce::File& f)
            { const auto c = chunkOf (f); p.setStateInformation (c.getData(), (int) c.getSize()); return true; } },
        { "preset", "Preset", false, [] (Quorlane& p, const juce::File& f)
            { const auto c = chunkOf (f); p.setCurrentProgramStateInformation (c.getData(), (int) c.getSize()); return true; } },
        { "preset", "Preset", true, [] (Quorlane& p, const juce::File& f) { return p.loadPresetFile (f, 5); } },
        { "bank", "PresetBank", true, [] (Quorlane& p, const juce::File& f) { return p.loadBankFile (f); } },
        { "midimap", "MidiControlMap", true, [] (Quorlane& p, const juce::File& f) { return p.getMidiControl().loadFile (f); } },
    };
}

TEST (BadInput, RefusedDocumentsChangeNothing)
{
    const ScopedConfigHome home;
    Quorlane plugin;
    giveProjectState (plugin);
    const auto before = stateText (plugin);

    for (const auto& reader : readers)
    {
        auto files = corpusFiles (reader.folder, "refused");
        ASSERT_GE (files.size(), 6) << reader.folder;

        // Deeper than any stack could recurse, and no file at all.
        const juce::TemporaryFile deepFile;
        ASSERT_TRUE (deepFile.getFile().replaceWithText ("<" + juce::String (reader.root) + " application=\"Quorlane\">"
                                                         + juce::String::repeatedString ("<a>", 300000)
                                                         + juce::String::repeatedString ("</a>", 300000) + "</" + reader.root + ">"));
        files.addArray ({ deepFile.getFile(), juce::File ("/"), juce::File ("/no/such/document.xml") });

        for (const auto& file : files)
        {
            SCOPED_TRACE (juce::String (reader.folder) + (reader.reports ? " file " : " chunk ") + file.getFileName());
            EXPECT_FALSE (reader.read (plugin, file) && reader.reports);
            EXPECT_EQ (stateText (plugin), before);
        }
    }

    // Raw bytes that are no chunk at all, and cuts through a real chunk, each
    // also just before the next '>' where a cut end tag would pass for a whole
    // one (every reader shares the check; the corpus holds a cut of each kind).
    juce::MemoryBlock good;
    plugin.getStateInformation (good);

    for (const auto& bytes : { juce::MemoryBlock ("junk", 4), juce::MemoryBlock (good.getData(), 8) })
        plugin.setStateInformation (bytes.getData(), (int) bytes.getSize());

    plugin.setStateInformation (nullptr, 100);
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

    EXPECT_EQ (stateText (plugin), before);
}

TEST (BadInput, ToleratedDocumentsKeepEveryValueMapAndSlotSound)
{
    const ScopedConfigHome home;

    for (const auto& reader : readers)
    {
        const auto files = corpusFiles (reader.folder, "tolerated");
        ASSERT_GE (files.size(), 3) << reader.folder;

        for (const auto& file : files)
        {
            SCOPED_TRACE (juce::String (reader.folder) + (reader.reports ? " file " : " chunk ") + file.getFileName());
            Quorlane plugin;
            giveProjectState (plugin);
            EXPECT_TRUE (reader.read (plugin, file));

            for (auto* p : plugin.getParameterManager().getAllParameters())
            {
                const auto value = p->getNormalisedValue();
                EXPECT_TRUE (std::isfinite (value) && value >= 0.0f && value <= 1.0f) << p->getName() << " = " << value;
            }

            EXPECT_EQ (midiMapProblems (plugin.getMidiControl()), "");
            EXPECT_EQ (presetBankProblems (plugin), "");
            EXPECT_EQ (plugin.getCurrentQualityStep(), 2) << "no valid quality keyword in it; presets never reach Quality";

            if (reader.root == std::string ("MidiControlMap"))
            {
                EXPECT_EQ (plugin.getMidiControl().getParameterAt (10), nullptr) << "a map replaces the whole map";
            }
        }
    }

    // Ten thousand presets: the first 128 are kept, a later group is left
    // empty, and no "Not used" group is added.
    juce::String text ("<PresetBank name='Huge'><PresetGroup name='All'>");
    for (int i = 0; i < 10000; ++i)
        text << "<Preset application='Quorlane' name='p" << i << "'><param name='FX' value='0.25'/></Preset>";
    const juce::TemporaryFile bank (".qlprsb");
    ASSERT_TRUE (bank.getFile().replaceWithText (text + "</PresetGroup><PresetGroup name='Late'>"
                                                 "<Preset application='Quorlane' name='q'/></PresetGroup></PresetBank>"));

    Quorlane plugin;
    ASSERT_TRUE (plugin.loadBankFile (bank.getFile()));
    ASSERT_EQ (plugin.getGroups().size(), 2u);
    EXPECT_EQ (plugin.getGroups()[1].count, 0);
    EXPECT_EQ (plugin.getSlotName (127), "p127");
    EXPECT_EQ (presetBankProblems (plugin), "");
}

TEST (BadInput, MissingUnreadableOrOddSettingsLeaveTheDefaults)
{
    const ScopedConfigHome home;
    EXPECT_EQ (Quorlane().getDefaultQuality(), 0) << "no settings file yet";
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
