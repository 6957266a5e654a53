#include "EditorTestSupport.h"

#include "editor/OldStylePresetBrowserWindow.h"
#include "editor/PresetBrowserButtons.h"
#include "editor/SkinImageButton.h"

#include "../support/ScopedConfigHome.h"

// Groups are added and removed without breaking the bank's partition; the
// presets column shows the chosen group's slots and renames them.
TEST (PresetBrowser, GroupOperationsKeepThePartitionAndColumnsShowTheChosenGroupsSlots)
{
    Quorlane plugin;
    plugin.resetBank();
    OldStylePresetsBrowser browser (plugin);
    browser.setSize (500, 300);
    const auto total = [&plugin] { int sum = 0; for (const auto& group : plugin.getGroups()) sum += group.count; return sum; };

    browser.addGroup();
    EXPECT_EQ (plugin.getGroups().size(), 1u) << "nothing chosen, nothing added";

    browser.chooseGroup (0);
    browser.addGroup();
    auto groups = plugin.getGroups();
    ASSERT_EQ (groups.size(), 2u);
    EXPECT_EQ (groups[0].name, "New Group");
    EXPECT_EQ (groups[0].count, 0);
    EXPECT_EQ (total(), 128);

    browser.chooseGroup (1);
    browser.removeGroup();
    EXPECT_EQ (plugin.getGroups().size(), 2u) << "a group holding presets stays";

    auto* presets = dynamic_cast<OldStylePresetsBrowser::PresetListColumn*> (browser.getColumn (1));
    ASSERT_NE (presets, nullptr);
    EXPECT_EQ (presets->getNumItems(), 128);
    EXPECT_EQ (presets->getItemText (4), "Preset 5");

    // (Choosing a row loads it: the keyboard test's Return in this list. A
    // rename reaches the name parameter by the manager's one rule.)
    presets->itemRenamed (4, "Cathedral");
    EXPECT_EQ (plugin.getSlotName (4), "Cathedral");

    browser.chooseGroup (0);
    browser.removeGroup();
    EXPECT_EQ (plugin.getGroups().size(), 1u);
    EXPECT_EQ (total(), 128);
}

// The tool buttons are keys drawn from our art. "Load" on each row opens the
// file dialog in the folder where a file of that kind (preset or bank) was
// last loaded or saved, not in the other's.
TEST (PresetBrowser, ToolButtonsAreKeysOfOurArtAndFileDialogsOpenWhereTheirKindWasLastUsed)
{
    const ScopedConfigHome home;
    Quorlane plugin;
    const auto presetFolder = home.getFolder().getChildFile ("My Presets");
    const auto bankFolder = home.getFolder().getChildFile ("My Banks");
    presetFolder.createDirectory();
    bankFolder.createDirectory();
    ASSERT_TRUE (plugin.savePresetFile (presetFolder.getChildFile ("Room" + plugin.getPresetFileExtension()), 0));
    ASSERT_TRUE (plugin.saveBankFile (bankFolder.getChildFile ("Session" + plugin.getBankFileExtension())));

    OldStylePresetBrowserWindow window (plugin, [] {});
    std::vector<SkinImageButton*> keys;

    for (auto* child : window.getContentComponent()->getChildren())
        if (auto* key = dynamic_cast<SkinImageButton*> (child))
            keys.push_back (key);

    ASSERT_EQ ((int) keys.size(), PresetBrowserButtons::numButtons);

    for (int i = 0; i < PresetBrowserButtons::numButtons; ++i)
    {
        const auto& entry = PresetBrowserButtons::buttons[i];
        auto& key = *keys[(size_t) i];
        ASSERT_TRUE (key.getImage().isValid()) << entry.image;
        EXPECT_TRUE (key.getImage().hasDoubleResolution()) << entry.image << " has a twin of twice its size";
        EXPECT_EQ (key.getImage().getHeight(), 2 * PresetBrowserButtons::keyHeight) << "two frames: at rest, pressed";
        EXPECT_EQ (key.getBounds().getWidth(), key.getFrameBounds().getWidth());
        EXPECT_TRUE (window.getContentComponent()->getLocalBounds().contains (key.getBounds())) << entry.name;
        EXPECT_GT (key.getImage().getImage().getPixelAt (key.getImage().getWidth() / 2, PresetBrowserButtons::keyHeight / 2).getAlpha(), 0);
    }

    EditorTest::click (*keys[5]);
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 1u) << "\"Down\" steps to the next preset";

    if (juce::FileChooser::isPlatformDialogAvailable())
        GTEST_SKIP() << "the system's own file dialog would open (Windows, or zenity or kdialog installed)";

    const auto folderOpenedBy = [&] (const juce::String& buttonTitle)
    {
        for (auto* child : window.getContentComponent()->getChildren())
            if (auto* button = dynamic_cast<juce::Button*> (child); button != nullptr && button->getTitle() == buttonTitle)
                button->triggerClick();

        runMessageLoop();
        auto* dialog = dynamic_cast<juce::FileChooserDialogBox*> (juce::Component::getCurrentlyModalComponent());
        juce::File folder;

        if (dialog == nullptr)
            return folder;

        for (auto* child : dialog->getContentComponent()->getChildren())
            if (auto* browser = dynamic_cast<juce::FileBrowserComponent*> (child))
                folder = browser->getRoot();

        dialog->exitModalState (0);
        runMessageLoop();
        return folder;
    };

    EXPECT_EQ (folderOpenedBy ("Load preset").getFullPathName(), presetFolder.getFullPathName());
    EXPECT_EQ (folderOpenedBy ("Load preset bank").getFullPathName(), bankFolder.getFullPathName());
}
