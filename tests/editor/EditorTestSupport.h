#pragma once

#include "SystemFocus.h"

#include "editor/BasePluginEditor.h"
#include "editor/GUIController.h"
#include "engine/Quorlane.h"
#include "tests/support/PluginBlocks.h"

#include <gtest/gtest.h>

#include <utility>

namespace EditorTest
{
    // A click as the mouse makes it, with the given keys held.
    inline void click (juce::Button& button, juce::ModifierKeys modifiers = {})
    {
        const auto saved = std::exchange (juce::ModifierKeys::currentModifiers, modifiers);
        button.triggerClick();
        runMessageLoop();
        juce::ModifierKeys::currentModifiers = saved;
    }

    // An open top-level window of a kind (and title, if given), if any.
    template <typename Window>
    Window* findWindow (const juce::String& title = {})
    {
        for (int i = 0; i < juce::TopLevelWindow::getNumTopLevelWindows(); ++i)
            if (auto* window = dynamic_cast<Window*> (juce::TopLevelWindow::getTopLevelWindow (i)))
                if (title.isEmpty() || window->getName() == title)
                    return window;

        return nullptr;
    }

    // Pixels of `image` that differ from `other` with `image` laid at `offset` in it.
    inline int differingPixels (const juce::Image& image, const juce::Image& other, juce::Point<int> offset = {})
    {
        int differences = 0;
        for (int y = 0; y < image.getHeight(); ++y)
            for (int x = 0; x < image.getWidth(); ++x)
                differences += image.getPixelAt (x, y) != other.getPixelAt (offset.x + x, offset.y + y) ? 1 : 0;
        return differences;
    }

    // A picture enlarged by repeating each pixel has every 2 x 2 block of one colour.
    inline double shareOfUniformBlocks (const juce::Image& image)
    {
        int uniform = 0, blocks = 0;
        for (int y = 0; y + 1 < image.getHeight(); y += 2)
            for (int x = 0; x + 1 < image.getWidth(); x += 2, ++blocks)
            {
                const auto c = image.getPixelAt (x, y);
                uniform += c == image.getPixelAt (x + 1, y) && c == image.getPixelAt (x, y + 1) && c == image.getPixelAt (x + 1, y + 1) ? 1 : 0;
            }
        return (double) uniform / (double) blocks;
    }

    // Kept as a PNG in the build folder for a look, and read back: every
    // channel within the rounding of premultiplied alpha (the skin's art and
    // the renderer's plots go through the same codec).
    inline void save (const juce::Image& image, const char* name)
    {
        const auto file = juce::File (QUORLANE_TEST_OUTPUT_DIR).getChildFile (name);
        file.deleteFile();
        {
            juce::FileOutputStream out (file);
            EXPECT_TRUE (out.openedOk() && juce::PNGImageFormat().writeImageToStream (image, out)) << name;
        }
        const auto back = juce::ImageFileFormat::loadFrom (file);
        ASSERT_EQ (back.getBounds(), image.getBounds()) << name;
        int largest = 0;

        for (int y = 0; y < image.getHeight(); ++y)
            for (int x = 0; x < image.getWidth(); ++x)
            {
                const auto p = image.getPixelAt (x, y).getPixelARGB(), q = back.getPixelAt (x, y).getPixelARGB();
                for (const int d : { p.getRed() - q.getRed(), p.getGreen() - q.getGreen(), p.getBlue() - q.getBlue(), p.getAlpha() - q.getAlpha() })
                    largest = std::max (largest, std::abs (d));
            }

        EXPECT_LE (largest, 2) << name;
    }

    template <typename Control>
    Control& find (const BasePluginEditor& editor, const juce::String& name)
    {
        if (auto* control = dynamic_cast<Control*> (editor.findController (name)))
            return *control;

        throw std::runtime_error (("no control " + name).toStdString());
    }

    // Makes a window the one the system sends keys to and lets JUCE hear of
    // it: JUCE then gives the keyboard to the window's last focused control,
    // or to the window itself (done here when JUCE had missed a change).
    inline void activate (juce::Component& window)
    {
        giveSystemFocus (*window.getPeer());
        runMessageLoop (50);

        if (! window.hasKeyboardFocus (true))
            window.grabKeyboardFocus();
    }

    // A key as the window receives it, passed on as JUCE does: to the focused
    // control, then up its parents, and Tab moving the focus.
    inline void press (const juce::KeyPress& key, int pumpMilliseconds = 50)
    {
        auto* focused = juce::Component::getCurrentlyFocusedComponent();

        if (focused == nullptr || focused->getPeer() == nullptr)
            throw std::runtime_error ("no focused window for a key");

        focused->getPeer()->handleKeyPress (key);
        runMessageLoop (pumpMilliseconds);
    }

    inline void press (int keyCode, juce::ModifierKeys modifiers = {}) { press (juce::KeyPress (keyCode, modifiers, 0)); }

    inline void type (const juce::String& text)
    {
        for (auto c : text)
            press (juce::KeyPress ((int) juce::CharacterFunctions::toUpperCase (c), {}, c), 0);
        runMessageLoop();
    }

    inline juce::String focusedName()
    {
        auto* focused = juce::Component::getCurrentlyFocusedComponent();
        return focused != nullptr ? focused->getName() : juce::String ("(none)");
    }

    // Records what controls report.
    struct RecordingListener : GUIController::Listener
    {
        void controllerEvent (GUIController&, int eventId) override { events.add (eventId); }
        void controllerMoved (GUIController&) override {}

        juce::Array<int> events;
    };
}
