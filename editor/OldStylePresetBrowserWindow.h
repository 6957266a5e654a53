#pragma once

#include "OldStylePresetsBrowser.h"

#include <functional>

// The "Preset Browser" window: the two columns and the buttons for the preset
// manager's group, copy/paste, stepping and file operations.
class OldStylePresetBrowserWindow : public juce::DocumentWindow
{
public:
    OldStylePresetBrowserWindow (BasePluginOldStyle& plugin, std::function<void()> onClose);
    ~OldStylePresetBrowserWindow() override;

    void closeButtonPressed() override { onClose(); }

private:
    class Content;

    std::function<void()> onClose;
};
