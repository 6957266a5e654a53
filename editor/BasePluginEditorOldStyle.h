#pragma once

#include "BasePluginEditor.h"

#include "presets/BasePluginOldStyle.h"

class OldStylePresetBrowserWindow;

// The editor of plug-ins that keep their presets inside: the "Presets" page
// of the options, the preset browser window, saving the current preset to a
// file.
class BasePluginEditorOldStyle : public BasePluginEditor
{
public:
    explicit BasePluginEditorOldStyle (BasePluginOldStyle& plugin);
    BasePluginEditorOldStyle (BasePluginOldStyle& plugin, const juce::XmlElement* skin);
    ~BasePluginEditorOldStyle() override;

    void handleEvent (int eventId, GUIController* source) override;

    void togglePresetBrowser();

    // How the bank is filled at start, how edits reach the current preset and
    // how preset changes are carried out; every choice applies at once.
    class PresetsSettingsComponent : public juce::Component
    {
    public:
        explicit PresetsSettingsComponent (BasePluginOldStyle& plugin);

        void resized() override;

        // The groups' buttons in order: default presets (3), storing (2), changing (2).
        juce::ToggleButton& getButton (int group, int index);
        juce::TextEditor& getPathField() noexcept { return pathField; }
        juce::ToggleButton& getMixLockButton() noexcept { return mixLockButton; }

        // Shows the manager's current choices.
        void refresh();

    private:
        struct Group
        {
            juce::GroupComponent frame;
            juce::OwnedArray<juce::ToggleButton> buttons;
        };

        void addGroup (int groupIndex, const juce::String& title, const juce::StringArray& labels,
                       std::function<void (int)> choose);
        void commitPath();

        BasePluginOldStyle& plugin;
        Group groups[3];
        juce::TextEditor pathField;
        juce::ToggleButton mixLockButton;
    };

protected:
    void addOptionsPages (OptionsPanel& panel) override;

private:
    void saveCurrentPresetAs();

    BasePluginOldStyle& presets;
    std::unique_ptr<OldStylePresetBrowserWindow> browser;
    std::unique_ptr<juce::FileChooser> chooser;
};
