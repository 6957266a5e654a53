// The "Presets" page of the options: what its buttons and path field set in
// the preset manager, and what it shows of the manager's choices.
#include "EditorTestSupport.h"

#include "editor/BasePluginEditorOldStyle.h"
#include "tests/support/ScopedConfigHome.h"

using Page = BasePluginEditorOldStyle::PresetsSettingsComponent;
using EditorTest::click;

TEST (PresetSettingsPage, ButtonsAndPathSetTheManagerAndTheSettingsFile)
{
    ScopedConfigHome home;
    Quorlane plugin;
    Page page (plugin);
    page.setSize (600, 260);
    // Which buttons are on: default presets (3), storing (2), changing (2).
    const auto shownChoices = [&page]
    {
        std::string on;
        for (const auto& [group, size] : { std::pair { 0, 3 }, { 1, 2 }, { 2, 2 } })
            for (int i = 0; i < size; ++i)
                on += page.getButton (group, i).getToggleState() ? "1" : "0";
        return on;
    };
    EXPECT_EQ (shownChoices(), "100" "01" "10");

    plugin.changeToPreset (4);
    plugin.getPluginParameter (2)->setNormalisedValue (0.125f, ChangeOrigin::editor);
    click (page.getButton (1, 0));
    EXPECT_EQ (plugin.getStoringMode(), BasePluginOldStyle::automaticStoring);
    EXPECT_EQ (plugin.getSlot (4)->values[2], 0.125f) << "choosing automatic stores at once";

    click (page.getButton (2, 1));
    EXPECT_EQ (plugin.getChangingType(), BasePluginOldStyle::silentChange);

    const auto bank = home.getFolder().getChildFile ("mine.qlprsb");
    click (page.getButton (0, 2));
    page.getPathField().setText (bank.getFullPathName());
    page.getPathField().onReturnKey();
    EXPECT_EQ (plugin.getDefaultPresetsMode(), BasePluginOldStyle::userDefinedPresets);
    EXPECT_EQ (plugin.getDefaultPresetsFile(), bank);
    EXPECT_EQ (shownChoices(), "001" "10" "01");

    ASSERT_TRUE (page.getMixLockButton().isVisible());
    click (page.getMixLockButton());
    EXPECT_TRUE (plugin.isMixLocked());

    const auto saved = juce::parseXML (home.settingsFile());
    ASSERT_NE (saved, nullptr);
    // (The manager writes the bank file and the mix lock: UserSettings, MixLock.)
    EXPECT_EQ (saved->getChildByName ("PresetSettings")->getStringAttribute ("changing"), "silent");

    // Opening the page again shows what the manager holds now.
    plugin.setDefaultPresetsMode (BasePluginOldStyle::clearPresets);
    plugin.setStoringMode (BasePluginOldStyle::onDemandStoring);
    plugin.setMixLock (false);
    page.refresh();
    EXPECT_EQ (shownChoices(), "010" "01" "01");
    EXPECT_FALSE (page.getMixLockButton().getToggleState());
}
