// Preset and bank files from outside fed the corpus in tests/corpus/preset and
// tests/corpus/bank: a refused file changes nothing; a tolerated one loads
// what it can and leaves every slot and group sound.
#include "engine/Quorlane.h"
#include "tests/support/Corpus.h"
#include "tests/support/PresetBankChecks.h"

#include <gtest/gtest.h>

namespace
{
    struct Files
    {
        juce::TemporaryFile preset { ".qlprs" }, bank { ".qlprsb" };
    };
}

TEST (PresetBadInput, RefusedFilesChangeNothing)
{
    Quorlane plugin;
    plugin.changeToPreset (5);
    plugin.renameSlot (5, "Mine");
    const auto before = presetManagerSnapshot (plugin);
    Files files;

    for (const auto& file : corpusFiles ("preset", "refused"))
    {
        ASSERT_TRUE (file.copyFileTo (files.preset.getFile()));
        EXPECT_FALSE (plugin.loadPresetFile (files.preset.getFile(), 5)) << file.getFileName();
        EXPECT_EQ (presetManagerSnapshot (plugin), before) << file.getFileName();
    }

    for (const auto& file : corpusFiles ("bank", "refused"))
    {
        ASSERT_TRUE (file.copyFileTo (files.bank.getFile()));
        EXPECT_FALSE (plugin.loadBankFile (files.bank.getFile())) << file.getFileName();
        EXPECT_EQ (presetManagerSnapshot (plugin), before) << file.getFileName();
    }

    // Every cut through a good bank file, and files that are no files at all.
    ASSERT_TRUE (plugin.saveBankFile (files.bank.getFile()));
    const auto whole = files.bank.getFile().loadFileAsString();

    for (int step = 1; step < 60; ++step)
    {
        const int length = whole.length() * step / 60;
        ASSERT_TRUE (files.bank.getFile().replaceWithText (whole.substring (0, length)));
        ASSERT_FALSE (plugin.loadBankFile (files.bank.getFile())) << "cut at " << length;
    }

    EXPECT_FALSE (plugin.loadBankFile (files.bank.getFile().getParentDirectory()));
    EXPECT_FALSE (plugin.loadPresetFile (juce::File ("/no/such/preset.qlprs"), 5));
    EXPECT_EQ (presetManagerSnapshot (plugin), before);
}

TEST (PresetBadInput, ToleratedFilesLoadWhatTheyCanAndKeepTheBankSound)
{
    Files files;

    for (const auto& file : corpusFiles ("preset", "tolerated"))
    {
        Quorlane plugin;
        ASSERT_TRUE (file.copyFileTo (files.preset.getFile()));
        EXPECT_TRUE (plugin.loadPresetFile (files.preset.getFile(), 0)) << file.getFileName();
        EXPECT_EQ (presetBankProblems (plugin), "") << file.getFileName();
        EXPECT_EQ (plugin.getCurrentQualityStep(), 0) << file.getFileName() << ": presets never reach Quality";
    }

    for (const auto& file : corpusFiles ("bank", "tolerated"))
    {
        Quorlane plugin;
        ASSERT_TRUE (file.copyFileTo (files.bank.getFile()));
        EXPECT_TRUE (plugin.loadBankFile (files.bank.getFile())) << file.getFileName();
        EXPECT_EQ (presetBankProblems (plugin), "") << file.getFileName();
    }

    // Ten thousand presets: the first 128 are kept, and no "Not used" group.
    juce::String text ("<PresetBank name='Huge'><PresetGroup name='All'>");
    for (int i = 0; i < 10000; ++i)
        text << "<Preset application='Quorlane' name='p" << i << "'><param name='FX' value='0.25'/></Preset>";
    ASSERT_TRUE (files.bank.getFile().replaceWithText (text + "</PresetGroup></PresetBank>"));

    Quorlane plugin;
    ASSERT_TRUE (plugin.loadBankFile (files.bank.getFile()));
    ASSERT_EQ (plugin.getGroups().size(), 1u);
    EXPECT_EQ (plugin.getSlotName (127), "p127");
    EXPECT_EQ (presetBankProblems (plugin), "");
}
