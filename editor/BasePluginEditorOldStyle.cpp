#include "BasePluginEditorOldStyle.h"

#include "DialogFolder.h"
#include "OldStylePresetBrowserWindow.h"

BasePluginEditorOldStyle::BasePluginEditorOldStyle (BasePluginOldStyle& p)
    : BasePluginEditor (p), presets (p)
{
}

BasePluginEditorOldStyle::BasePluginEditorOldStyle (BasePluginOldStyle& p, const juce::XmlElement* skin)
    : BasePluginEditor (p, skin), presets (p)
{
}

BasePluginEditorOldStyle::~BasePluginEditorOldStyle() = default;

void BasePluginEditorOldStyle::handleEvent (int eventId, GUIController* source)
{
    if (eventId == EventRegistry::savePresetAs)
    {
        saveCurrentPresetAs();
        return;
    }

    BasePluginEditor::handleEvent (eventId, source);
}

void BasePluginEditorOldStyle::togglePresetBrowser()
{
    if (browser != nullptr)
        browser.reset();
    else
        browser = std::make_unique<OldStylePresetBrowserWindow> (presets, [this] { browser.reset(); });
}

void BasePluginEditorOldStyle::saveCurrentPresetAs()
{
    const int slot = (int) presets.getCurrentPresetIndex();
    const auto extension = presets.getPresetFileExtension();

    chooser = std::make_unique<juce::FileChooser> ("Save current settings as preset",
                                                   dialogFolder (presets.getLastPresetFolder()).getChildFile (presets.getCurrentPresetName() + extension),
                                                   "*" + extension);
    chooser->launchAsync (juce::FileBrowserComponent::saveMode | juce::FileBrowserComponent::canSelectFiles
                              | juce::FileBrowserComponent::warnAboutOverwriting,
                          [this, slot, extension] (const juce::FileChooser& fc)
    {
        const auto file = fc.getResult();

        if (file != juce::File())
            presets.savePresetFile (file.hasFileExtension (extension) ? file : file.withFileExtension (extension), slot);
    });
}

void BasePluginEditorOldStyle::addOptionsPages (OptionsPanel& panel)
{
    panel.addPage ("Presets", std::make_unique<PresetsSettingsComponent> (presets));
    BasePluginEditor::addOptionsPages (panel);
}

//==============================================================================
BasePluginEditorOldStyle::PresetsSettingsComponent::PresetsSettingsComponent (BasePluginOldStyle& p)
    : plugin (p)
{
    addGroup (0, "Default presets", { "Factory presets", "Clear presets", "User defined" },
              [this] (int index) { plugin.setDefaultPresetsMode (index); });
    addGroup (1, "Preset storing", { "Automatic", "On demand" },
              [this] (int index) { plugin.setStoringMode (index); });
    addGroup (2, "Changing type", { "Normal", "Silent" },
              [this] (int index) { plugin.setChangingType (index); });

    pathField.setTextToShowWhenEmpty ("Bank file for \"User defined\"", juce::Colours::grey);
    pathField.setTitle ("Bank file for \"User defined\"");
    pathField.onReturnKey = [this] { commitPath(); };
    pathField.onFocusLost = [this] { commitPath(); };
    addAndMakeVisible (pathField);

    const auto mix = plugin.getMixParameterNames();
    mixLockButton.setButtonText ("Mix lock: keep " + mix.joinIntoString (" and ") + " when the preset changes");
    mixLockButton.onClick = [this] { plugin.setMixLock (mixLockButton.getToggleState()); };
    addChildComponent (mixLockButton);
    mixLockButton.setVisible (! mix.isEmpty());

    refresh();
}

void BasePluginEditorOldStyle::PresetsSettingsComponent::addGroup (int groupIndex, const juce::String& title,
                                                                   const juce::StringArray& labels,
                                                                   std::function<void (int)> choose)
{
    auto& group = groups[groupIndex];
    group.frame.setText (title);
    group.frame.setColour (juce::GroupComponent::textColourId, juce::Colour (0xffbef6ff));
    addAndMakeVisible (group.frame);

    for (int i = 0; i < labels.size(); ++i)
    {
        auto* button = group.buttons.add (new juce::ToggleButton (labels[i]));
        button->setRadioGroupId (groupIndex + 1, juce::dontSendNotification);
        button->onClick = [button, choose, i] { if (button->getToggleState()) choose (i); };
        addAndMakeVisible (button);
    }
}

juce::ToggleButton& BasePluginEditorOldStyle::PresetsSettingsComponent::getButton (int group, int index)
{
    return *groups[group].buttons[index];
}

void BasePluginEditorOldStyle::PresetsSettingsComponent::refresh()
{
    const int chosen[] = { plugin.getDefaultPresetsMode(), plugin.getStoringMode(), plugin.getChangingType() };

    for (int g = 0; g < 3; ++g)
        for (int i = 0; i < groups[g].buttons.size(); ++i)
            groups[g].buttons[i]->setToggleState (i == chosen[g], juce::dontSendNotification);

    pathField.setText (plugin.getDefaultPresetsFile().getFullPathName(), false);
    mixLockButton.setToggleState (plugin.isMixLocked(), juce::dontSendNotification);
}

void BasePluginEditorOldStyle::PresetsSettingsComponent::commitPath()
{
    const auto path = pathField.getText().trim();

    if (path != plugin.getDefaultPresetsFile().getFullPathName())
        plugin.setDefaultPresetsFile (path.isEmpty() ? juce::File() : juce::File::getCurrentWorkingDirectory().getChildFile (path));
}

void BasePluginEditorOldStyle::PresetsSettingsComponent::resized()
{
    auto area = getLocalBounds().reduced (10, 6);
    const int rowsPerGroup[] = { 2, 1, 1 };

    for (int g = 0; g < 3; ++g)
    {
        auto box = area.removeFromTop (24 + rowsPerGroup[g] * 28);
        area.removeFromTop (6);
        groups[g].frame.setBounds (box);

        auto row = box.reduced (10, 0).withTrimmedTop (18).removeFromTop (26);

        for (auto* button : groups[g].buttons)
            button->setBounds (row.removeFromLeft (150));

        if (g == 0)
            pathField.setBounds (box.reduced (12, 0).withTrimmedTop (48).removeFromTop (24));
    }

    mixLockButton.setBounds (area.removeFromTop (26).reduced (10, 0));
}
