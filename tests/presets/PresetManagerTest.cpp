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
    int presetNumberParameter (Quorlane& p) { return p.getPluginParameter (BasePluginOldStyle::currentPresetNumberIndex)->getIntValue(); }
}

TEST (PresetManager, SteppingStopsAtEitherEndSelectingAloneDoesNotApplyAndProgramChangesApply)
{
    Quorlane plugin;
    EXPECT_EQ (liveValues (plugin), plugin.getSlot (0)->values) << "a new instance plays the first preset";
    EXPECT_EQ (presetNumberParameter (plugin), 0);
    EXPECT_EQ (presetNameParameter (plugin), "Cristal Cave [d/w]");

    CountingListener listener;
    plugin.addPresetManagerListener (&listener);
    plugin.selectPreviousPreset();
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 0u);
    EXPECT_EQ (listener.applied, 0);

    plugin.selectNextPreset();
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 1u);
    EXPECT_EQ (liveValues (plugin), plugin.getSlot (1)->values);
    EXPECT_EQ (presetNameParameter (plugin), "Lead Tail [d/w]");
    EXPECT_EQ (listener.applied, 1);

    EXPECT_FALSE (plugin.selectPreset (128, true));
    ASSERT_TRUE (plugin.selectPreset (127, true));
    EXPECT_EQ (presetNumberParameter (plugin), 127);
    EXPECT_NE (liveValues (plugin), plugin.getSlot (127)->values) << "selecting does not apply";

    plugin.getPluginParameter (3)->setNormalisedValue (0.123f, ChangeOrigin::editor);
    plugin.selectNextPreset();
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 127u);
    EXPECT_EQ (plugin.getPluginParameter (3)->getNormalisedValue(), 0.123f);
    EXPECT_EQ (listener.applied, 1);
    plugin.removePresetManagerListener (&listener);

    prepare (plugin, 256);
    processBlocks (plugin, 256, 1, midiEvent (juce::MidiMessage::programChange (1, 30), 100));
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 30u);
    EXPECT_EQ (presetNumberParameter (plugin), 30);
    EXPECT_EQ (liveValues (plugin), plugin.getSlot (30)->values);
    runMessageLoop();
    EXPECT_EQ (presetNameParameter (plugin), "Hard Walls");
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
    EXPECT_EQ (presetNameParameter (plugin), "Concert hall_copy");
    plugin.renameSlot (60, "Mine");
    EXPECT_EQ (presetNameParameter (plugin), "Mine");
    plugin.renameSlot (128, "Nowhere");
    plugin.storeSlot (-1);

    plugin.resetBank();
    EXPECT_EQ (plugin.getSlotName (60), "Preset 61");
    EXPECT_EQ (plugin.getSlot (0)->values, plugin.getDefaultPreset().values);
    ASSERT_EQ (plugin.getGroups().size(), 1u);
    EXPECT_EQ (plugin.getGroups()[0].count, 128);

    // Automatic storing keeps the current slot in step, and only that one,
    // also for an edit made on the audio thread just before a program change
    // that the message thread has not yet stored.
    plugin.changeToPreset (2);
    plugin.setStoringMode (BasePluginOldStyle::automaticStoring);
    plugin.getPluginParameter (7)->setNormalisedValue (0.3f, ChangeOrigin::editor);
    EXPECT_EQ (plugin.getSlot (2)->values[7], 0.3f);
    EXPECT_NE (plugin.getSlot (3)->values[7], 0.3f);

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

TEST (PresetManager, EveryRenameCutsNamesByOneRuleSoSlotAndNameParameterAgree)
{
    Quorlane plugin;
    const juce::String ascii33 = "Thirty-three characters long, ok!";
    const auto multiByte = juce::String::fromUTF8 ("Gro\xc3\x9f""e Halle \xc3\xbc""ber dem Flu\xc3\x9f""ufer \xe2\x80\x93 Nachhall");
    ASSERT_GT (multiByte.substring (0, 32).getNumBytesAsUTF8(), (size_t) 32) << "cut by characters, not bytes";

    plugin.changeToPreset (5);
    auto& nameParameter = *plugin.getPluginParameter (BasePluginOldStyle::currentPresetNameIndex);

    // The name display commits into the parameter; the slot follows it.
    nameParameter.setText (ascii33, ChangeOrigin::editor);
    EXPECT_EQ (plugin.getSlotName (5), ascii33.substring (0, 32));

    for (const auto& name : { ascii33, multiByte })
    {
        plugin.renameSlot (5, name);
        EXPECT_EQ (plugin.getSlotName (5), name.substring (0, 32));
        EXPECT_EQ (presetNameParameter (plugin), plugin.getSlotName (5));

        plugin.renameSlot (6, name);
        EXPECT_EQ (plugin.getSlotName (6), name.substring (0, 32)) << "a slot that is not current is cut alike";
    }

    plugin.copyCurrentPreset();
    plugin.changeToPreset (7);
    plugin.pasteCopiedPreset();
    EXPECT_EQ (plugin.getSlotName (7), multiByte.substring (0, 32));
    EXPECT_EQ (presetNameParameter (plugin), plugin.getSlotName (7));

    const juce::TemporaryFile presetFile (".qlprs");
    ASSERT_TRUE (presetFile.getFile().replaceWithText ("<Preset application='Quorlane' name='" + ascii33 + "'/>"));
    ASSERT_TRUE (plugin.loadPresetFile (presetFile.getFile(), 7));
    EXPECT_EQ (plugin.getSlotName (7), ascii33.substring (0, 32));
    EXPECT_EQ (presetNameParameter (plugin), plugin.getSlotName (7));
}

TEST (PresetManager, FilesLoadIntoTheirSlotsAndEachKindKeepsItsOwnLastFolder)
{
    const ScopedConfigHome home;
    const auto presets = home.getFolder().getChildFile ("presets"), banks = home.getFolder().getChildFile ("banks"),
               more = home.getFolder().getChildFile ("more");
    for (const auto& folder : { presets, banks, more })
        ASSERT_TRUE (folder.createDirectory());

    Quorlane plugin;
    plugin.changeToPreset (25);
    const auto presetFile = presets.getChildFile ("a.qlprs"), bankFile = banks.getChildFile ("b.qlprsb");
    ASSERT_TRUE (plugin.savePresetFile (presetFile, 25));
    EXPECT_EQ (plugin.getLastPresetFolder(), presets);
    EXPECT_EQ (plugin.getLastBankFolder(), juce::File());

    ASSERT_TRUE (plugin.saveBankFile (bankFile));
    EXPECT_EQ (plugin.getLastBankFolder(), banks);
    EXPECT_EQ (plugin.getLastPresetFolder(), presets);

    ASSERT_TRUE (presetFile.copyFileTo (more.getChildFile ("c.qlprs")));
    ASSERT_TRUE (bankFile.copyFileTo (more.getChildFile ("d.qlprsb")));
    ASSERT_TRUE (plugin.loadPresetFile (more.getChildFile ("c.qlprs"), 3));
    EXPECT_EQ (plugin.getSlotName (3), "Concert hall");
    EXPECT_EQ (plugin.getLastPresetFolder(), more);
    EXPECT_EQ (plugin.getLastBankFolder(), banks);
    EXPECT_FALSE (plugin.loadPresetFile (presetFile, 128));
    EXPECT_FALSE (plugin.loadBankFile (more.getChildFile ("c.qlprs")));
    EXPECT_EQ (plugin.getLastBankFolder(), banks) << "a file that does not load leaves the folder";

    plugin.resetBank();
    ASSERT_TRUE (plugin.loadBankFile (more.getChildFile ("d.qlprsb")));
    EXPECT_EQ (plugin.getLastBankFolder(), more);
    EXPECT_EQ (plugin.getSlotName (46), "Big Tunnel");
    EXPECT_EQ (liveValues (plugin), plugin.getSlot (25)->values) << "the current preset is applied after a bank load";
    plugin.changeToPreset (50);
    EXPECT_EQ (presetNameParameter (plugin), "Preset 51");
}

// The fade itself and its silence are the core's (QuorlaneCore tests).
TEST (PresetManager, ASilentChangeAppliesAtTheQuietPoint)
{
    ScopedConfigHome home;
    Quorlane plugin;
    plugin.setChangingType (BasePluginOldStyle::silentChange);
    plugin.changeToPreset (32);
    EXPECT_EQ (liveValues (plugin), plugin.getSlot (32)->values) << "an instance that is not playing changes at once";

    prepare (plugin, 512);
    processBlocks (plugin, 512, 10);
    plugin.changeToPreset (12);
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 12u);
    processBlocks (plugin, 512, 1);
    EXPECT_EQ (liveValues (plugin), plugin.getSlot (32)->values) << "the values wait for the quiet point";
    processBlocks (plugin, 512, 50);
    EXPECT_EQ (liveValues (plugin), plugin.getSlot (12)->values);
    runMessageLoop();
    EXPECT_EQ (presetNameParameter (plugin), "Metal Walls [d/w]");
}
