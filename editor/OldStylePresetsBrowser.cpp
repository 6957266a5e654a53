#include "OldStylePresetsBrowser.h"

OldStylePresetsBrowser::OldStylePresetsBrowser (BasePluginOldStyle& p)
    : plugin (p)
{
    plugin.addPresetManagerListener (this);
    rebuild();
}

OldStylePresetsBrowser::~OldStylePresetsBrowser()
{
    plugin.removePresetManagerListener (this);
}

// The chosen group stays chosen while it exists; the current preset's row is
// shown selected.
void OldStylePresetsBrowser::rebuild()
{
    const juce::ScopedValueSetter<bool> guard (rebuilding, true);
    const int numGroups = (int) plugin.getGroups().size();

    if (selectedGroup >= numGroups)
        selectedGroup = numGroups - 1;

    auto& groupColumn = dynamic_cast<GroupListColumn&> (getNumColumns() > 0 ? *getColumn (0)
                                                        : setColumn (0, std::make_unique<GroupListColumn> (*this)));
    groupColumn.refresh();
    groupColumn.selectRow (selectedGroup);

    if (selectedGroup < 0)
        return;

    // The open preset column is kept when it still shows the chosen group:
    // rebuilding may run from inside one of its own callbacks.
    auto* presetColumn = dynamic_cast<PresetListColumn*> (getColumn (1));

    if (presetColumn != nullptr && presetColumn->getGroup() == selectedGroup)
        presetColumn->refresh();
    else
        presetColumn = &dynamic_cast<PresetListColumn&> (setColumn (1, std::make_unique<PresetListColumn> (*this, selectedGroup)));

    const int row = (int) plugin.getCurrentPresetIndex() - plugin.getFirstSlotOfGroup (selectedGroup);

    presetColumn->selectRow (row >= 0 && row < presetColumn->getNumItems() ? row : -1);
}

void OldStylePresetsBrowser::chooseGroup (int group)
{
    if (rebuilding || group == selectedGroup)
        return;

    selectedGroup = group;
    rebuild();
}

void OldStylePresetsBrowser::showCurrentPreset()
{
    const int slot = (int) plugin.getCurrentPresetIndex();
    const auto groups = plugin.getGroups();

    for (int g = 0; g < (int) groups.size(); ++g)
        if (slot >= plugin.getFirstSlotOfGroup (g) && slot < plugin.getFirstSlotOfGroup (g) + groups[(size_t) g].count)
        {
            chooseGroup (g);
            return;
        }
}

void OldStylePresetsBrowser::addGroup()
{
    if (selectedGroup >= 0)
        plugin.insertGroup (selectedGroup, "New Group");

    rebuild();
}

void OldStylePresetsBrowser::removeGroup()
{
    if (selectedGroup >= 0)
        plugin.removeGroup (selectedGroup);

    rebuild();
}

void OldStylePresetsBrowser::copyPreset()     { plugin.copyCurrentPreset(); rebuild(); }
void OldStylePresetsBrowser::pastePreset()    { plugin.pasteCopiedPreset(); rebuild(); }
void OldStylePresetsBrowser::previousPreset() { plugin.selectPreviousPreset(); rebuild(); }
void OldStylePresetsBrowser::nextPreset()     { plugin.selectNextPreset(); rebuild(); }

//==============================================================================
int OldStylePresetsBrowser::GroupListColumn::getNumItems() const
{
    return (int) plugin.getGroups().size();
}

juce::String OldStylePresetsBrowser::GroupListColumn::getItemText (int row) const
{
    const auto groups = plugin.getGroups();
    return row >= 0 && row < (int) groups.size() ? groups[(size_t) row].name : juce::String();
}

void OldStylePresetsBrowser::GroupListColumn::itemChosen (int row)
{
    browser.chooseGroup (row);
}

void OldStylePresetsBrowser::GroupListColumn::itemRenamed (int row, const juce::String& text)
{
    plugin.renameGroup (row, text);
}

//==============================================================================
int OldStylePresetsBrowser::PresetListColumn::getSlotOfRow (int row) const
{
    return plugin.getFirstSlotOfGroup (group) + row;
}

int OldStylePresetsBrowser::PresetListColumn::getNumItems() const
{
    const auto groups = plugin.getGroups();
    return group >= 0 && group < (int) groups.size() ? groups[(size_t) group].count : 0;
}

juce::String OldStylePresetsBrowser::PresetListColumn::getItemText (int row) const
{
    return plugin.getSlotName (getSlotOfRow (row));
}

void OldStylePresetsBrowser::PresetListColumn::itemChosen (int row)
{
    const int slot = getSlotOfRow (row);

    if (! browser.rebuilding && slot != (int) plugin.getCurrentPresetIndex())
        plugin.changeToPreset (slot);
}

void OldStylePresetsBrowser::PresetListColumn::itemRenamed (int row, const juce::String& text)
{
    plugin.renameSlot (getSlotOfRow (row), text);
}
