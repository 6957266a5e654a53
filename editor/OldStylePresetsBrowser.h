#pragma once

#include "ColumnBrowser.h"

#include "presets/BasePluginOldStyle.h"

// The bank in two columns: the groups, and the presets of the chosen group.
// Row r of group g is slot (first slot of g) + r. Moving through the groups
// opens each one's presets; a preset loads when it is chosen (a click or
// Return), not when the arrow keys pass over it. The operations below are
// the browser window's buttons; after each the columns show the manager's
// state again.
class OldStylePresetsBrowser : public ColumnBrowser,
                               private BasePluginOldStyle::PresetManagerListener
{
public:
    explicit OldStylePresetsBrowser (BasePluginOldStyle& plugin);
    ~OldStylePresetsBrowser() override;

    void chooseGroup (int group);

    // Chooses the group that holds the current preset.
    void showCurrentPreset();

    // A new empty "New Group" before the chosen group; nothing without a choice.
    void addGroup();
    // The chosen group, only when it holds no presets.
    void removeGroup();
    void copyPreset();
    void pastePreset();
    void previousPreset();
    void nextPreset();

    void rebuild();

    class CommonColumn : public ColumnBrowser::ListColumn
    {
    public:
        explicit CommonColumn (OldStylePresetsBrowser& b) : browser (b), plugin (b.plugin) {}

    protected:
        OldStylePresetsBrowser& browser;
        BasePluginOldStyle& plugin;
    };

    class GroupListColumn : public CommonColumn
    {
    public:
        using CommonColumn::CommonColumn;

        int getNumItems() const override;
        juce::String getItemText (int row) const override;
        void itemChosen (int row) override;
        void itemSelected (int row) override { itemChosen (row); }
        void itemRenamed (int row, const juce::String& text) override;
    };

    class PresetListColumn : public CommonColumn
    {
    public:
        PresetListColumn (OldStylePresetsBrowser& b, int groupIndex) : CommonColumn (b), group (groupIndex) {}

        int getGroup() const noexcept { return group; }
        int getSlotOfRow (int row) const;

        int getNumItems() const override;
        juce::String getItemText (int row) const override;
        void itemChosen (int row) override;
        void itemRenamed (int row, const juce::String& text) override;

    private:
        const int group;
    };

private:
    void presetApplied (BasePluginOldStyle&) override { rebuild(); }
    void presetBankChanged (BasePluginOldStyle&) override { rebuild(); }

    BasePluginOldStyle& plugin;
    int selectedGroup = -1;
    bool rebuilding = false;
};
