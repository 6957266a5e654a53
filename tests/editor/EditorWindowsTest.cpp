// The preset browser belongs to the editor the host opened: closing the
// editor closes it. (Opening and closing it and the about box from the skin's
// buttons and keys is checked with the keyboard and the screen reader.)

#include "EditorTestSupport.h"

#include "editor/OldStylePresetBrowserWindow.h"
#include "framework/EventRegistry.h"

using namespace EditorTest;

TEST (EditorWindows, ClosingTheEditorClosesItsBrowser)
{
    Quorlane plugin;
    std::unique_ptr<juce::AudioProcessorEditor> editor (plugin.createEditor());
    editor->addToDesktop (0);
    editor->setVisible (true);
    dynamic_cast<BasePluginEditor&> (*editor).handleEvent (EventRegistry::browsePresets, nullptr);
    pumpMessages();

    auto* browser = findWindow<OldStylePresetBrowserWindow>();
    ASSERT_NE (browser, nullptr);
    EXPECT_TRUE (browser->isOnDesktop());
    EXPECT_GT (browser->getWidth(), 300);

    editor.reset();
    pumpMessages();
    EXPECT_EQ (findWindow<OldStylePresetBrowserWindow>(), nullptr);
}
