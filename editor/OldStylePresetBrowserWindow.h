#pragma once

#include "OldStylePresetsBrowser.h"

#include <functional>

// The "Preset Browser" window: the two columns and the buttons for the preset
// manager's group, copy/paste, stepping and file operations. It opens at the
// current preset, with the keyboard in its list; Escape closes it.
class OldStylePresetBrowserWindow : public juce::DocumentWindow
{
public:
    OldStylePresetBrowserWindow (BasePluginOldStyle& plugin, std::function<void()> onClose);
    ~OldStylePresetBrowserWindow() override;

    void closeButtonPressed() override { onClose(); }
    bool keyPressed (const juce::KeyPress& key) override;
    void focusGained (FocusChangeType cause) override;

private:
    class Content;

    Content& getContent() const;

    std::function<void()> onClose;
};
