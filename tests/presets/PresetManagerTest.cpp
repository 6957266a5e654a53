// The preset manager of a whole plug-in instance: its bank, selection,
// editing operations, files and silent changes.
#include "engine/Quorlane.h"
#include "tests/support/PluginBlocks.h"
#include "tests/support/ScopedConfigHome.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{
    struct CountingListener : BasePluginOldStyle::PresetManagerListener
    {
        void presetApplied (BasePluginOldStyle&) override { ++applied; }
        void presetBankChanged (BasePluginOldStyle&) override {}
        int applied = 0;
    };

    juce::String presetNameParameter (Quorlane& p) { return p.getPluginParameter (BasePluginOldStyle::currentPresetNameIndex)->getText(); }
}

// Program changes and the other ways presets change, and a new instance
// playing its first preset, are MixLock's.
TEST (PresetManager, SteppingStopsAtEitherEndAndSelectingAloneDoesNotApply)
{
    Quorlane plugin;
    EXPECT_EQ (plugin.getPluginParameter (BasePluginOldStyle::currentPresetNumberIndex)->getIntValue(), 0);
    EXPECT_EQ (presetNameParameter (plugin), "Cristal Cave [d/w]");

    CountingListener listener;
    plugin.addPresetManagerListener (&listener);
    plugin.selectPreviousPreset();
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 0u);
    EXPECT_EQ (listener.applied, 0);

    plugin.selectNextPreset();
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 1u);
    EXPECT_EQ (listener.applied, 1);

    EXPECT_FALSE (plugin.selectPreset (128, true));
    ASSERT_TRUE (plugin.selectPreset (127, true));
    EXPECT_EQ (plugin.getPluginParameter (BasePluginOldStyle::currentPresetNumberIndex)->getIntValue(), 127);
    EXPECT_NE (liveValues (plugin), plugin.getSlot (127)->values) << "selecting does not apply";

    plugin.getPluginParameter (3)->setNormalisedValue (0.123f, ChangeOrigin::editor);
    plugin.selectNextPreset();
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 127u);
    EXPECT_EQ (plugin.getPluginParameter (3)->getNormalisedValue(), 0.123f);
    EXPECT_EQ (listener.applied, 1);
    plugin.removePresetManagerListener (&listener);
}

TEST (PresetManager, EditingTouchesOnlyTheCurrentSlotAndStoringFollowsItsMode)
{
    ScopedConfigHome home;
    Quorlane plugin;
    plugin.changeToPreset (25);
    const auto hall = plugin.getSlot (25)->values;

    plugin.pasteCopiedPreset();
    EXPECT_EQ (plugin.getSlotName (25), "Concert hall") << "paste before any copy does nothing";

    plugin.copyCurrentPreset();
    plugin.changeToPreset (60);
    plugin.pasteCopiedPreset();
    EXPECT_EQ (plugin.getSlotName (60), "Concert hall_copy");
    EXPECT_EQ (presetNameParameter (plugin), "Concert hall_copy");
    EXPECT_EQ (plugin.getSlot (60)->values, hall);
    EXPECT_EQ (liveValues (plugin), hall);
    EXPECT_EQ (plugin.getSlotName (25), "Concert hall");

    plugin.getPluginParameter (0)->setNormalisedValue (0.9f, ChangeOrigin::editor);
    EXPECT_NE (plugin.getSlot (60)->values[0], 0.9f) << "on-demand storing waits for store";
    plugin.storeCurrentPreset();
    EXPECT_EQ (plugin.getSlot (60)->values[0], 0.9f);
    EXPECT_EQ (plugin.getSlotName (60), "Concert hall_copy") << "store keeps the name";

    plugin.renameSlot (61, "Elsewhere");
    EXPECT_EQ (presetNameParameter (plugin), "Concert hall_copy") << "only the current slot's name is shown";
    plugin.renameSlot (128, "Nowhere");
    plugin.storeSlot (-1);

    // A cleared bank's names and single group are what the browser shows (PresetBrowser).
    plugin.resetBank();
    EXPECT_EQ (plugin.getSlot (0)->values, plugin.getDefaultPreset().values);

    // Automatic storing (which every hosted format's test checks) keeps the
    // current slot in step, and only that one, also for an edit made on the
    // audio thread just before a program change that the message thread has
    // not yet stored.
    plugin.changeToPreset (2);
    plugin.setStoringMode (BasePluginOldStyle::automaticStoring);
    const auto slot4 = plugin.getSlot (4)->values;
    prepare (plugin, 64);
    std::thread ([&plugin]
    {
        juce::AudioBuffer<float> buffer (2, 64);
        juce::MidiBuffer midi;
        plugin.getParameters()[8]->setValue (0.625f);
        midi.addEvent (juce::MidiMessage::programChange (1, 4), 0);
        plugin.processBlock (buffer, midi);
    }).join();

    runMessageLoop();
    EXPECT_EQ (plugin.getSlot (2)->values[8], 0.625f) << "stored where it was made";
    EXPECT_EQ (plugin.getSlot (4)->values, slot4);
    EXPECT_EQ (liveValues (plugin), slot4);
}

// The current slot's rename through the name parameter (the preset display)
// is the keyboard test's; a paste's name, EditingTouchesOnlyTheCurrentSlot's.
TEST (PresetManager, EveryRenameCutsNamesByOneRule)
{
    Quorlane plugin;
    const juce::String ascii33 = "Thirty-three characters long, ok!";
    const auto multiByte = juce::String::fromUTF8 ("Gro\xc3\x9f""e Halle \xc3\xbc""ber dem Flu\xc3\x9f""ufer \xe2\x80\x93 Nachhall");
    ASSERT_GT (multiByte.substring (0, 32).getNumBytesAsUTF8(), (size_t) 32) << "cut by characters, not bytes";

    plugin.renameSlot (6, multiByte);
    EXPECT_EQ (plugin.getSlotName (6), multiByte.substring (0, 32)) << "a slot that is not current is cut alike";

    plugin.changeToPreset (7);
    const juce::TemporaryFile presetFile (".qlprs");
    ASSERT_TRUE (presetFile.getFile().replaceWithText ("<Preset application='Quorlane' name='" + ascii33 + "'/>"));
    ASSERT_TRUE (plugin.loadPresetFile (presetFile.getFile(), 7));
    EXPECT_EQ (plugin.getSlotName (7), ascii33.substring (0, 32));
    EXPECT_EQ (presetNameParameter (plugin), plugin.getSlotName (7));
}

// What the files hold is WrittenDocuments'; the dialogs opening in these
// folders, PresetBrowser's.
TEST (PresetManager, EachKindOfFileKeepsItsOwnLastFolder)
{
    const ScopedConfigHome home;
    const auto presets = home.getFolder().getChildFile ("presets"), banks = home.getFolder().getChildFile ("banks"),
               more = home.getFolder().getChildFile ("more");
    for (const auto& folder : { presets, banks, more })
        ASSERT_TRUE (folder.createDirectory());

    Quorlane plugin;
    ASSERT_TRUE (plugin.savePresetFile (presets.getChildFile ("a.qlprs"), 25));
    EXPECT_EQ (plugin.getLastBankFolder(), juce::File());
    ASSERT_TRUE (plugin.saveBankFile (banks.getChildFile ("b.qlprsb")));
    EXPECT_EQ (plugin.getLastPresetFolder(), presets);

    ASSERT_TRUE (presets.getChildFile ("a.qlprs").copyFileTo (more.getChildFile ("c.qlprs")));
    ASSERT_TRUE (banks.getChildFile ("b.qlprsb").copyFileTo (more.getChildFile ("d.qlprsb")));
    ASSERT_TRUE (plugin.loadPresetFile (more.getChildFile ("c.qlprs"), 3));
    EXPECT_FALSE (plugin.loadPresetFile (more.getChildFile ("c.qlprs"), 128));
    EXPECT_FALSE (plugin.loadBankFile (more.getChildFile ("c.qlprs")));
    EXPECT_EQ (plugin.getLastPresetFolder(), more);
    EXPECT_EQ (plugin.getLastBankFolder(), banks) << "a file that does not load leaves the folder";

    ASSERT_TRUE (plugin.loadBankFile (more.getChildFile ("d.qlprsb")));
    EXPECT_EQ (plugin.getLastBankFolder(), more);
}
