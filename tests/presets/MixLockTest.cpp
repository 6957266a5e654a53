// The mix lock: preset changes keep "FX" and "Wet Gain" on every path that
// changes presets, normal and silent, preset and bank files included, and the
// preset's name follows; a new instance still starts with its first preset in
// full; the user settings keep the option.
#include "editor/OldStylePresetsBrowser.h"
#include "engine/Quorlane.h"
#include "tests/support/PluginBlocks.h"
#include "tests/support/ScopedConfigHome.h"

#include <gtest/gtest.h>

namespace
{
    constexpr uint32_t wetGain = 17, fx = 18;
    constexpr float myWetGain = 0.71234f, myFx = 0.91234f;
    constexpr int blockSize = 512;

    // A way to change presets: the slot it changes to from slot 0, the slot whose values it brings.
    const struct Path { const char* name; int target, source; void (*change) (Quorlane&); } paths[] = {
        { "browser", 30, 30, [] (Quorlane& plugin)
            {
                OldStylePresetsBrowser browser (plugin);
                browser.chooseGroup (1);
                auto& column = dynamic_cast<OldStylePresetsBrowser::PresetListColumn&> (*browser.getColumn (1));
                column.itemChosen (30 - plugin.getFirstSlotOfGroup (1));
            } },
        { "arrow", 1, 1, [] (Quorlane& plugin) { plugin.handleEvent (EventRegistry::selectNextPreset); } },
        { "program change", 40, 40, [] (Quorlane& plugin)
            { processBlocks (plugin, blockSize, 1, midiEvent (juce::MidiMessage::programChange (1, 40), 10)); } },
        { "preset file into the current slot", 0, 30, [] (Quorlane& plugin)
            {
                const juce::TemporaryFile file (plugin.getPresetFileExtension());
                ASSERT_TRUE (plugin.savePresetFile (file.getFile(), 30));
                ASSERT_TRUE (plugin.loadPresetFile (file.getFile(), 0));
            } },
        { "bank file", 0, 0, [] (Quorlane& plugin)
            {
                const juce::TemporaryFile file (plugin.getBankFileExtension());
                ASSERT_TRUE (plugin.saveBankFile (file.getFile()));
                ASSERT_TRUE (plugin.loadBankFile (file.getFile()));
            } },
    };

    // The live values after a change, with the mix set by hand first.
    std::array<float, 20> changeWithMyMix (const Path& path, int changingType, bool locked)
    {
        Quorlane plugin;
        plugin.setChangingType (changingType);
        plugin.setMixLock (locked);
        prepare (plugin, blockSize);
        plugin.getPluginParameter (wetGain)->setNormalisedValue (myWetGain, ChangeOrigin::editor);
        plugin.getPluginParameter (fx)->setNormalisedValue (myFx, ChangeOrigin::editor);

        path.change (plugin);
        processBlocks (plugin, blockSize, 40); // past a silent change's quiet point
        runMessageLoop();
        EXPECT_EQ (plugin.getCurrentPresetIndex(), (unsigned) path.target) << path.name;
        EXPECT_EQ (plugin.getPluginParameter (BasePluginOldStyle::currentPresetNameIndex)->getText(), plugin.getSlotName (path.target)) << path.name;
        return liveValues (plugin);
    }
}

TEST (MixLock, EveryPresetChangeKeepsTheMixWhenLocked)
{
    ScopedConfigHome home;
    Quorlane reference;
    EXPECT_FALSE (reference.isMixLocked());

    for (const auto& path : paths)
    {
        auto expected = reference.getSlot (path.source)->values;
        ASSERT_NE (expected[wetGain], myWetGain);
        ASSERT_NE (expected[fx], myFx);

        for (const int type : { BasePluginOldStyle::normalChange, BasePluginOldStyle::silentChange })
        {
            const auto kind = juce::String (path.name) + (type == BasePluginOldStyle::silentChange ? ", silent" : ", normal");
            EXPECT_EQ (changeWithMyMix (path, type, false), expected) << kind << ": unlocked, the preset brings its mix";

            auto withMyMix = expected;
            withMyMix[wetGain] = myWetGain;
            withMyMix[fx] = myFx;
            EXPECT_EQ (changeWithMyMix (path, type, true), withMyMix) << kind << ": locked, the mix stays";
        }
    }

    // Kept for later instances, which still start with their first preset in full.
    Quorlane().setMixLock (true);
    Quorlane fresh;
    EXPECT_TRUE (fresh.isMixLocked());
    EXPECT_EQ (liveValues (fresh), fresh.getSlot (0)->values);
}
