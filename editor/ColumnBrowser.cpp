#include "ColumnBrowser.h"

namespace
{
    juce::Font itemFont()
    {
        static const bool hasTahoma = juce::Font::findAllTypefaceNames().contains ("Tahoma");
        return hasTahoma ? juce::Font ("Tahoma", 14.0f, juce::Font::plain) : juce::Font (14.0f);
    }
}

// One row: a label that edits on double-click and reports the new text.
// The list is the keyboard's stop and names its rows to screen readers, so
// the label is neither, except while it is being edited.
class ColumnBrowser::ListColumn::ItemComponent : public juce::Label
{
public:
    explicit ItemComponent (ListColumn& o) : owner (o)
    {
        setFont (itemFont());
        setEditable (false, true, false);
        setWantsKeyboardFocus (false);
        setAccessible (false);
        setInterceptsMouseClicks (true, false);
        onTextChange = [this] { owner.itemRenamed (row, getText()); };
    }

    void update (int newRow, bool selected)
    {
        row = newRow;
        setText (owner.getItemText (row), juce::dontSendNotification);
        setColour (backgroundColourId, selected ? juce::Colour (0xff3a4a58) : juce::Colours::transparentBlack);
        setColour (textColourId, juce::Colour (0xffe6e8ec));
    }

    void mouseDown (const juce::MouseEvent&) override
    {
        owner.list.selectRow (row);
        owner.itemChosen (row);
    }

private:
    void editorShown (juce::TextEditor* editor) override
    {
        setAccessible (true);
        editor->setTitle ("Name");
    }

    // Return and Escape give the keyboard back to the list; a click
    // elsewhere keeps it where it went.
    void editorAboutToBeHidden (juce::TextEditor* editor) override
    {
        const bool hadFocus = editor->hasKeyboardFocus (false);
        setAccessible (false);

        if (hadFocus)
            owner.list.grabKeyboardFocus();
    }

    ListColumn& owner;
    int row = 0;
};

ColumnBrowser::ListColumn::ListColumn()
{
    list.setRowHeight (20);
    list.setColour (juce::ListBox::backgroundColourId, juce::Colour (0xff1a1a1c));
    list.setColour (juce::ListBox::outlineColourId, juce::Colour (0xff3a3b3f));
    list.setOutlineThickness (1);
    // The keys scroll the list; a screen reader needs no scroll bar beside it.
    list.getVerticalScrollBar().setAccessible (false);
    addAndMakeVisible (list);
}

// The rows ask the model for their texts; by now the column's own part is gone.
ColumnBrowser::ListColumn::~ListColumn()
{
    list.setModel (nullptr);
}

// The model is set on the first refresh: the rows are the derived column's.
void ColumnBrowser::ListColumn::refresh()
{
    if (list.getModel() == nullptr)
        list.setModel (this);

    list.updateContent();
    list.repaint();
}

juce::Component* ColumnBrowser::ListColumn::refreshComponentForRow (int row, bool selected, juce::Component* existing)
{
    if (row < 0 || row >= getNumItems())
    {
        delete existing;
        return nullptr;
    }

    auto* item = dynamic_cast<ItemComponent*> (existing);

    if (item == nullptr)
    {
        delete existing;
        item = new ItemComponent (*this);
    }

    item->update (row, selected);
    return item;
}

void ColumnBrowser::ListColumn::selectedRowsChanged (int lastRowSelected)
{
    if (lastRowSelected >= 0)
        itemSelected (lastRowSelected);
}

void ColumnBrowser::ListColumn::returnKeyPressed (int row)
{
    itemChosen (row);
    focusNeighbour (1);
}

bool ColumnBrowser::ListColumn::keyPressed (const juce::KeyPress& key)
{
    if (key == juce::KeyPress::leftKey || key == juce::KeyPress::rightKey)
    {
        focusNeighbour (key == juce::KeyPress::leftKey ? -1 : 1);
        return true;
    }

    if (key == juce::KeyPress::F2Key)
    {
        if (auto* item = dynamic_cast<ItemComponent*> (list.getComponentForRowNumber (list.getSelectedRow())))
            item->showEditor();

        return true;
    }

    return false;
}

// Called from the column's own callbacks, which may have replaced the
// columns to the right: they are looked up afresh.
void ColumnBrowser::ListColumn::focusNeighbour (int offset)
{
    if (auto* browser = findParentComponentOfClass<ColumnBrowser>())
        if (const int index = browser->indexOfColumn (this); index >= 0)
            if (auto* neighbour = browser->getColumn (index + offset))
                neighbour->focusList();
}

//==============================================================================
ColumnBrowser::ColumnBrowser()
{
    viewport.setViewedComponent (&content, false);
    viewport.setScrollBarsShown (false, true);
    viewport.getHorizontalScrollBar().setAccessible (false);
    addAndMakeVisible (viewport);
}

ColumnBrowser::Column& ColumnBrowser::setColumn (int index, std::unique_ptr<Column> column)
{
    index = juce::jlimit (0, (int) columns.size(), index);
    columns.resize ((size_t) index);
    content.addAndMakeVisible (*column);
    columns.push_back (std::move (column));
    layoutColumns();
    columns.back()->refresh();
    return *columns.back();
}

ColumnBrowser::Column* ColumnBrowser::getColumn (int index) const
{
    return index >= 0 && index < (int) columns.size() ? columns[(size_t) index].get() : nullptr;
}

int ColumnBrowser::indexOfColumn (const Column* column) const
{
    for (size_t i = 0; i < columns.size(); ++i)
        if (columns[i].get() == column)
            return (int) i;

    return -1;
}

void ColumnBrowser::resized()
{
    viewport.setBounds (getLocalBounds());
    layoutColumns();
}

void ColumnBrowser::layoutColumns()
{
    const int height = juce::jmax (0, viewport.getHeight() - viewport.getScrollBarThickness());
    content.setSize (juce::jmax (viewport.getWidth(), (int) columns.size() * columnWidth), height);

    for (size_t i = 0; i < columns.size(); ++i)
        columns[i]->setBounds ((int) i * columnWidth, 0, columnWidth - 4, height);
}
