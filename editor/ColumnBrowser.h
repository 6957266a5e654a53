#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <memory>
#include <vector>

// A row of list columns in a horizontal viewport, each column showing what
// the choice in the column to its left opened (groups, then their items).
class ColumnBrowser : public juce::Component
{
public:
    class Column : public juce::Component
    {
    public:
        virtual void refresh() = 0;
    };

    // A column whose rows are texts: a click chooses a row, a double-click
    // edits its text.
    class ListColumn : public Column,
                       private juce::ListBoxModel
    {
    public:
        ListColumn();
        ~ListColumn() override;

        virtual int getNumItems() const = 0;
        virtual juce::String getItemText (int row) const = 0;
        virtual void itemChosen (int row) = 0;
        virtual void itemRenamed (int row, const juce::String& text) = 0;

        void selectRow (int row) { list.selectRow (row); }
        void refresh() override;
        void resized() override { list.setBounds (getLocalBounds()); }

    private:
        class ItemComponent;

        int getNumRows() override { return getNumItems(); }
        void paintListBoxItem (int, juce::Graphics&, int, int, bool) override {}
        juce::Component* refreshComponentForRow (int row, bool selected, juce::Component* existing) override;
        void selectedRowsChanged (int lastRowSelected) override;

        juce::ListBox list;
    };

    ColumnBrowser();

    // Puts a column at this place, closing every column to its right.
    Column& setColumn (int index, std::unique_ptr<Column> column);
    int getNumColumns() const noexcept { return (int) columns.size(); }
    Column* getColumn (int index) const;

    void resized() override;

    static constexpr int columnWidth = 220;

private:
    void layoutColumns();

    juce::Viewport viewport;
    juce::Component content;
    std::vector<std::unique_ptr<Column>> columns;
};
