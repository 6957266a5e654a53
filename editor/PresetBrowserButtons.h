#pragma once

// The preset browser's image buttons, in their order. The art generator draws
// each image from this table and the browser loads it from the same entry, so
// the two cannot disagree.
namespace PresetBrowserButtons
{
    enum class Face { Legend, UpArrow, DownArrow };

    struct Button
    {
        const char* name;       // the component's name, and the legend of a legend key
        const char* tooltip;
        const char* image;      // a two-frame strip: at rest, pressed
        Face face;
    };

    inline constexpr Button buttons[] = {
        { "Add Group", "Add group", "BrowserAddGroup.png", Face::Legend },
        { "Rem Group", "Remove empty group", "BrowserRemoveGroup.png", Face::Legend },
        { "Copy", "Copy current preset", "BrowserCopy.png", Face::Legend },
        { "Paste", "Paste copied preset", "BrowserPaste.png", Face::Legend },
        { "Up", "Select previous preset", "BrowserPrevious.png", Face::UpArrow },
        { "Down", "Select next preset", "BrowserNext.png", Face::DownArrow },
    };

    constexpr int numButtons = (int) (sizeof (buttons) / sizeof (buttons[0]));
    constexpr int legendWidth = 72, keyHeight = 22, arrowWidth = 22;
}
