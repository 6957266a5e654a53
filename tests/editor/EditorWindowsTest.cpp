// The windows the editor opens of its own: the preset browser and the about
// box, shown and closed as a user would from the skin's buttons, on screen.

#include "EditorTestSupport.h"

#include "editor/OldStylePresetBrowserWindow.h"
#include "framework/EventRegistry.h"

using EditorTest::findWindow;

namespace
{
    juce::DialogWindow* findDialog (const juce::String& title)
    {
        for (int i = 0; i < juce::TopLevelWindow::getNumTopLevelWindows(); ++i)
            if (auto* dialog = dynamic_cast<juce::DialogWindow*> (juce::TopLevelWindow::getTopLevelWindow (i)))
                if (dialog->getName() == title)
                    return dialog;

        return nullptr;
    }
}

TEST (EditorWindows, BrowserAndAboutOpenOnScreenAndClose)
{
    Quorlane plugin;
    std::unique_ptr<juce::AudioProcessorEditor> editor (plugin.createEditor());
    auto& shell = dynamic_cast<BasePluginEditor&> (*editor);
    editor->addToDesktop (0);
    editor->setVisible (true);
    EditorTest::pumpMessages();
    const auto fire = [&shell] (int event)
    {
        shell.handleEvent (event, nullptr);
        EditorTest::pumpMessages();
    };

    fire (EventRegistry::browsePresets);
    auto* browser = findWindow<OldStylePresetBrowserWindow>();
    ASSERT_NE (browser, nullptr) << "\"Browse presets\" opens the browser";
    EXPECT_TRUE (browser->isOnDesktop());
    EXPECT_GT (browser->getWidth(), 300);

    fire (EventRegistry::browsePresets);
    EXPECT_EQ (findWindow<OldStylePresetBrowserWindow>(), nullptr) << "a second press closes it";

    fire (EventRegistry::browsePresets);
    ASSERT_NE (browser = findWindow<OldStylePresetBrowserWindow>(), nullptr);
    browser->closeButtonPressed();
    EditorTest::pumpMessages();
    EXPECT_EQ (findWindow<OldStylePresetBrowserWindow>(), nullptr) << "its close button closes it";

    fire (EventRegistry::about);
    auto* about = findDialog ("About Quorlane");
    ASSERT_NE (about, nullptr);
    about->closeButtonPressed();
    EditorTest::pumpMessages();
    EXPECT_EQ (findDialog ("About Quorlane"), nullptr);

    fire (EventRegistry::browsePresets);
    ASSERT_NE (findWindow<OldStylePresetBrowserWindow>(), nullptr);
    editor.reset();
    EditorTest::pumpMessages();
    EXPECT_EQ (findWindow<OldStylePresetBrowserWindow>(), nullptr) << "closing the editor closes its browser";
}
