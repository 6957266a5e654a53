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

        // Gives the keyboard focus to the column's list.
        virtual void focusList() = 0;
    };

    // A column whose rows are texts. The arrow keys move the selection; a
    // click or Return chooses a row, and Return on a row that opens a column
    // moves on into it (Left and Right move between columns too). A
    // double-click or F2 edits a row's text.
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

        // The selection moved to a row; nothing is chosen by that alone.
        virtual void itemSelected (int) {}

        void selectRow (int row) { list.selectRow (row); }
        int getSelectedRow() const { return list.getSelectedRow(); }
        void refresh() override;
        void focusList() override { list.grabKeyboardFocus(); }
        void resized() override { list.setBounds (getLocalBounds()); }
        bool keyPressed (const juce::KeyPress& key) override;

        juce::ListBox& getList() noexcept { return list; }

    private:
        class ItemComponent;

        int getNumRows() override { return getNumItems(); }
        void paintListBoxItem (int, juce::Graphics&, int, int, bool) override {}
        juce::Component* refreshComponentForRow (int row, bool selected, juce::Component* existing) override;
        void selectedRowsChanged (int lastRowSelected) override;
        void returnKeyPressed (int row) override;
        juce::String getNameForRow (int row) override { return getItemText (row); }

        void focusNeighbour (int offset);

        juce::ListBox list;
    };

    ColumnBrowser();

    // Puts a column at this place, closing every column to its right.
    Column& setColumn (int index, std::unique_ptr<Column> column);
    int getNumColumns() const noexcept { return (int) columns.size(); }
    Column* getColumn (int index) const;
    int indexOfColumn (const Column* column) const;

    void resized() override;

    static constexpr int columnWidth = 220;

private:
    void layoutColumns();

    juce::Viewport viewport;
    juce::Component content;
    std::vector<std::unique_ptr<Column>> columns;
};
