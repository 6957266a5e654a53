// The product window worked from the keyboard alone, the keys arriving as
// the system delivers them, and as a screen reader finds it: the tree of
// JUCE's accessibility handlers, walked and worked through JUCE's interfaces.
#include "EditorTestSupport.h"

#include "editor/BasePluginEditorOldStyle.h"
#include "editor/FocusRing.h"
#include "editor/GFXAnimation.h"
#include "editor/GFXButton.h"
#include "editor/GFXDisplay.h"
#include "editor/GFXKnob.h"
#include "editor/OldStylePresetBrowserWindow.h"
#include "editor/QuorlaneEditor.h"
#include "editor/ValueFromText.h"
#include "tests/support/ScopedConfigHome.h"

#include <optional>

using namespace EditorTest;
using Key = juce::KeyPress;
using Role = juce::AccessibilityRole;

namespace
{
    // Every handler under `handler`, depth first.
    std::vector<juce::AccessibilityHandler*> tree (juce::AccessibilityHandler& handler)
    {
        std::vector<juce::AccessibilityHandler*> all;
        for (auto* child : handler.getChildren())
        {
            all.push_back (child);
            const auto below = tree (*child);
            all.insert (all.end(), below.begin(), below.end());
        }
        return all;
    }

    bool isInteractive (const juce::AccessibilityHandler& h)
    {
        const auto* value = h.getValueInterface();
        return h.getActions().contains (juce::AccessibilityActionType::press) || (value != nullptr && ! value->isReadOnly())
            || h.getRole() == Role::list || h.getRole() == Role::listItem || h.getRole() == Role::editableText;
    }

    struct Accessibility : ::testing::Test
    {
        Accessibility()
        {
            // Distinct values, so that a value read from the wrong knob shows.
            for (int i = 0; i < BasePlugin::hostParameterCount; ++i)
                plugin.getHostParameter (i)->setValueNotifyingHost (0.03f + 0.047f * (float) i);

            // JUCE builds the accessibility tree only for components on screen.
            editor->addToDesktop (0);
            editor->setVisible (true);
            runMessageLoop();
            activate (*editor);
        }

        juce::AccessibilityHandler& handlerOf (const char* name)
        {
            return *editor->findController (name)->getComponent().getAccessibilityHandler();
        }

        // The names (or, where a control has none, the titles) that Tab visits.
        juce::String tabThrough (int stops)
        {
            juce::StringArray visited;

            for (int i = 0; i < stops; ++i)
            {
                press (Key::tabKey);
                const auto* focused = juce::Component::getCurrentlyFocusedComponent();
                visited.add (focused->getName().isNotEmpty() ? focused->getName() : focused->getTitle());
            }

            return visited.joinIntoString (", ");
        }

        void focus (const char* name)
        {
            editor->findController (name)->getComponent().grabKeyboardFocus();
            runMessageLoop();
        }

        // The options chosen here stay out of the other tests' settings.
        ScopedConfigHome home;
        Quorlane plugin;
        std::optional<QuorlaneEditor> editor { std::in_place, plugin };
    };

    struct Keyboard : Accessibility {};
}

// Tab reads the window as a page: the preset row left to right, the panels
// left to right, each from the top, then the options; it passes the meters
// by and comes round again, backwards with Shift.
TEST_F (Keyboard, TabWalksTheControlsInReadingOrder)
{
    EXPECT_EQ (tabThrough (31), "AboutButton, PreviousPresetButton, PresetNameDisplay, NextPresetButton, BrowseButton, "
                                "CopyButton, PasteButton, StoreButton, SaveButton, "
                                "Early Size, Early Diffusion, Early Attenuation, Early EQ Frequency, Early EQ Gain, Early EQ Bandwidth, "
                                "Late Size, Late Diffusion, Late Feedback, Late Attenuation, Late Bass Cut, "
                                "Late EQ Frequency, Late EQ Gain, Late EQ Bandwidth, DecayTimeDisplay, "
                                "X Fader, Modulation, Predelay, Wet Gain, FX, Output Volume, OptionsButton");

    press (Key::returnKey);
    ASSERT_TRUE (editor->isShowingOptions());
    EXPECT_EQ (tabThrough (6), "Quality, Presets, MIDI, Display, Default Quality, Current Quality");

    press (Key::escapeKey);
    EXPECT_FALSE (editor->isShowingOptions());
    EXPECT_EQ (focusedName(), "OptionsButton") << "the keyboard goes back to what opened the options";
    EXPECT_EQ (tabThrough (1), "AboutButton");
    press (Key::tabKey, juce::ModifierKeys::shiftModifier);
    EXPECT_EQ (focusedName(), "OptionsButton");
}

// The focused control wears the amber ring in the margin around it, as thick
// in skin pixels at 2x as at 1x, and keeps its own picture; the pictures are
// kept in the build folder for a look.
TEST_F (Keyboard, TheFocusRingSurroundsTheFocusedControlAtEveryScale)
{
    auto& knob = find<GFXKnob> (*editor, "Predelay");
    const auto area = knob.getBoundsInParent().expanded (FocusRing::margin);
    const auto isRing = [] (juce::Colour c) { return c.getPerceivedBrightness() > 0.6f && c.getHue() > 0.05f && c.getHue() < 0.15f; };
    int ringPixels[2] {};

    for (const int scale : { 1, 2 })
    {
        editor->grabKeyboardFocus();
        runMessageLoop();
        const auto plain = editor->createComponentSnapshot (area, true, (float) scale);
        knob.grabKeyboardFocus();
        runMessageLoop();
        const auto focused = editor->createComponentSnapshot (area, true, (float) scale);
        save (editor->createComponentSnapshot (editor->getLocalBounds(), true, (float) scale),
              scale == 1 ? "editor-focus.png" : "editor-focus@2x.png");

        const auto inner = juce::Rectangle<int> (FocusRing::margin, FocusRing::margin, knob.getWidth(), knob.getHeight()) * scale;
        EXPECT_EQ (differingPixels (focused.getClippedImage (inner), plain, inner.getPosition()), 0) << "the ring covers the knob";

        for (int y = 0; y < focused.getHeight(); ++y)
            for (int x = 0; x < focused.getWidth(); ++x)
                ringPixels[scale - 1] += ! inner.contains (x, y) && isRing (focused.getPixelAt (x, y)) ? 1 : 0;
    }

    const int perimeter = 2 * (area.getWidth() + area.getHeight());
    EXPECT_GT (ringPixels[0], perimeter * 3 / 4) << "a ring all round at 1x";
    EXPECT_GT (ringPixels[1], ringPixels[0] * 3) << "twice as long and twice as thick at 2x";
}

// Arrows a fine step, Page keys a coarse one, Home and End the ends, a typed
// number in the knob's units, and through the tree a text or a number; one
// host gesture for each change, as a drag would, and none where nothing moves.
TEST_F (Keyboard, KnobsMoveByKeyByTypedValuesAndThroughTheTree)
{
    HostGestures host (plugin);
    const int index = 6; // Late Size
    const auto value = [&] { return plugin.getHostParameterValue (index); };
    const float start = value();
    focus ("Late Size");

    for (const auto& [key, expected] : { std::pair { Key::upKey, start + 0.01f }, { Key::pageDownKey, start - 0.09f },
                                         { Key::endKey, 1.0f }, { Key::upKey, 1.0f }, { Key::homeKey, 0.0f } })
    {
        press (key);
        EXPECT_NEAR (value(), expected, 1e-6f) << key;
    }

    EXPECT_EQ (host.begun[index], 4);
    EXPECT_EQ (host.ended[index], 4);

    const auto wanted = plugin.getHostParameterText (index, 0.61f);
    type (wanted.upToFirstOccurrenceOf ("m", false, false));
    press (Key::returnKey);
    EXPECT_EQ (plugin.getHostParameterText (index), wanted);
    EXPECT_EQ (host.begun[index], 5);
    EXPECT_EQ (focusedName(), "Late Size") << "the field closes onto its knob";

    press (Key::returnKey);
    type ("abc");
    press (Key::escapeKey);
    EXPECT_EQ (plugin.getHostParameterText (index), wanted) << "Escape drops the typed text";
    EXPECT_EQ (host.begun[index], 5);

    auto& size = *handlerOf ("Late Size").getValueInterface();
    const auto target = plugin.getHostParameterText (index, 0.42f);
    size.setValueAsString (target);
    EXPECT_EQ (plugin.getHostParameterText (index), target);
    size.setValue (0.25);
    EXPECT_FLOAT_EQ (plugin.getHostParameterValue (index), 0.25f);
    EXPECT_EQ (host.begun[index], 7);
    EXPECT_EQ (host.ended[index], 7);
}

// Space and Return click a button. On the preset display the arrows step,
// Return renames and F4 opens the browser, where the arrows pass over
// presets, Return loads one and Escape closes. Space picks an option. Through
// the tree the preset display renames the preset by its value and opens the
// browser as its menu, a window that closes with the editor.
TEST_F (Keyboard, ButtonsThePresetDisplayTheBrowserAndTheOptions)
{
    const auto pressEach = [] (std::initializer_list<int> keys) { for (const int key : keys) press (key); };
    focus ("NextPresetButton");
    pressEach ({ Key::spaceKey, Key::returnKey });
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 2u);

    focus ("PresetNameDisplay");
    pressEach ({ Key::downKey, Key::downKey, Key::upKey });
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 3u);

    press (Key::returnKey);
    EXPECT_TRUE (find<GFXDisplay> (*editor, "PresetNameDisplay").isEditing());
    type ("Thirty-three characters long, ok!");
    press (Key::returnKey);
    EXPECT_EQ (plugin.getSlotName (3), "Thirty-three characters long, ok") << "cut to the preset name's length";
    EXPECT_EQ (find<GFXDisplay> (*editor, "PresetNameDisplay").getShownText(), plugin.getSlotName (3));
    EXPECT_EQ (focusedName(), "PresetNameDisplay");

    press (Key::F4Key);
    ASSERT_NE (findWindow<OldStylePresetBrowserWindow>(), nullptr);
    auto* list = dynamic_cast<juce::ListBox*> (juce::Component::getCurrentlyFocusedComponent());
    ASSERT_NE (list, nullptr) << "the browser opens in its list of presets";
    EXPECT_EQ (list->getSelectedRow(), 3);
    pressEach ({ Key::downKey, Key::downKey });
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 3u);
    press (Key::returnKey);
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 5u);
    press (Key::escapeKey);
    EXPECT_EQ (findWindow<OldStylePresetBrowserWindow>(), nullptr);

    activate (*editor);
    editor->setOptionsVisible (true);
    auto& tabs = *editor->getOptionsPanel();
    tabs.setCurrentTabIndex (tabs.getTabNames().indexOf ("Presets"));
    dynamic_cast<BasePluginEditorOldStyle::PresetsSettingsComponent&> (*tabs.getCurrentContentComponent())
        .getButton (2, 1).grabKeyboardFocus();
    press (Key::spaceKey);
    EXPECT_EQ (plugin.getChangingType(), 1) << "Space chose \"Silent\"";

    auto& preset = handlerOf ("PresetNameDisplay");
    EXPECT_EQ (preset.getRole(), Role::comboBox);
    EXPECT_EQ (preset.getTitle(), "Current Preset Name");
    // Cut by characters, never inside one: forty of two and three bytes each.
    const auto longName = juce::String::repeatedString (juce::String (juce::CharPointer_UTF8 ("\xc3\xa9\xe5\xa4\xa7")), 20);
    preset.getValueInterface()->setValueAsString (longName);
    EXPECT_EQ (plugin.getSlotName ((int) plugin.getCurrentPresetIndex()), longName.substring (0, 32));
    runMessageLoop();
    EXPECT_EQ (preset.getValueInterface()->getCurrentValueAsString(), longName.substring (0, 32)) << "the display follows";

    ASSERT_TRUE (preset.getActions().invoke (juce::AccessibilityActionType::showMenu));
    runMessageLoop();
    auto* browser = findWindow<OldStylePresetBrowserWindow>();
    ASSERT_NE (browser, nullptr);
    EXPECT_TRUE (browser->isOnDesktop());
    EXPECT_GT (browser->getWidth(), 300);

    editor.reset();
    runMessageLoop();
    EXPECT_EQ (findWindow<OldStylePresetBrowserWindow>(), nullptr);
}

// A typed display text comes back to its value for every parameter, by the
// first number in the plug-in's own text; beyond the range it is the end.
TEST (ValueFromText, ATypedDisplayTextFindsItsValue)
{
    Quorlane plugin;

    for (int index = 0; index < BasePlugin::hostParameterCount; ++index)
        for (const float v : { 0.0f, 0.13f, 0.5f, 0.87f, 1.0f })
        {
            const auto text = [&] (float x) { return plugin.getHostParameterText (index, x); };
            const auto found = ValueFromText::find (text, text (v));
            ASSERT_TRUE (found.has_value()) << text (v);
            EXPECT_EQ (ValueFromText::firstNumber (text (*found)), ValueFromText::firstNumber (text (v)))
                << plugin.getHostParameterName (index) << ": " << text (v) << " came back as " << text (*found);
        }

    const auto decibels = [] (float v) { return v == 0.0f ? juce::String ("-Inf.") : juce::String (v * 12.0f - 6.0f, 1) + "dB"; };
    EXPECT_NEAR (*ValueFromText::find (decibels, "-3 dB"), 0.25f, 0.005f);
    EXPECT_EQ (ValueFromText::find (decibels, "+50"), 1.0f);
    EXPECT_EQ (ValueFromText::find (decibels, "-inf"), 0.0f);
    EXPECT_EQ (ValueFromText::find (decibels, "loud"), std::nullopt);
}

// With each options page in turn: every parameter once, by its name, with the
// host's own text as its value; a name on everything that can be used; the
// meters left out; the decay time a read-only label.
TEST_F (Accessibility, TheTreeNamesEveryControlAndEachParameterOnceWithTheHostsText)
{
    editor->setOptionsVisible (true);
    auto& tabs = *editor->getOptionsPanel();

    for (int page = 0; page < tabs.getNumTabs(); ++page)
    {
        tabs.setCurrentTabIndex (page);
        runMessageLoop();
        std::map<juce::String, int> sliders;
        int onPage = 0;

        for (auto* h : tree (*editor->getAccessibilityHandler()))
        {
            EXPECT_FALSE (isInteractive (*h) && h->getTitle().isEmpty()) << "untitled, role " << (int) h->getRole();
            EXPECT_EQ (dynamic_cast<GFXAnimation*> (&h->getComponent()), nullptr) << "a meter is read out";
            onPage += isInteractive (*h) && tabs.getCurrentContentComponent()->isParentOf (&h->getComponent()) ? 1 : 0;

            if (h->getRole() == Role::slider)
            {
                const auto* p = plugin.getParameterManager().findParameter (h->getTitle());
                ASSERT_NE (p, nullptr) << h->getTitle();
                EXPECT_EQ (h->getValueInterface()->getCurrentValueAsString(),
                           plugin.getHostParameter ((int) p->getIndex())->getCurrentValueAsText()) << h->getTitle();
                ++sliders[h->getTitle()];
            }
        }

        EXPECT_GT (onPage, 0) << tabs.getTabNames()[page];
        EXPECT_EQ (sliders.size(), 20u);

        for (int i = 0; i < BasePlugin::hostParameterCount; ++i)
            EXPECT_EQ (sliders[plugin.getHostParameterName (i)], 1) << plugin.getHostParameterName (i);
    }

    auto& decay = handlerOf ("DecayTimeDisplay");
    EXPECT_EQ (decay.getRole(), Role::label);
    EXPECT_TRUE (decay.getValueInterface()->isReadOnly());
    EXPECT_TRUE (decay.getValueInterface()->getCurrentValueAsString().endsWith ("s"));
}

// Pressing each of the skin's buttons through the tree fires the event that
// its click fires (which event, the skin names): the browser opens and closes
// again, the about box opens and closes.
TEST_F (Accessibility, EveryButtonsPressDoesWhatItsClickDoes)
{
    RecordingListener heard;
    juce::Array<GFXButton*> buttons;

    for (auto* control : editor->getControllers())
        if (auto* button = dynamic_cast<GFXButton*> (control))
            buttons.add (button);

    for (auto* button : buttons)
    {
        button->GUIController::addListener (&heard);
        EXPECT_TRUE (button->getAccessibilityHandler()->getActions().invoke (juce::AccessibilityActionType::press));
        runMessageLoop();
    }

    const auto pressed = heard.events;
    heard.events.clear();

    for (auto* button : buttons)
    {
        button->triggerClick();
        runMessageLoop();
    }

    EXPECT_EQ (pressed, heard.events);
    EXPECT_EQ (findWindow<OldStylePresetBrowserWindow>(), nullptr) << "the second press closed the browser";
    EXPECT_NE (findWindow<juce::DialogWindow> ("About Quorlane"), nullptr);

    for (int i = juce::TopLevelWindow::getNumTopLevelWindows(); --i >= 0;)
        if (auto* about = dynamic_cast<juce::DialogWindow*> (juce::TopLevelWindow::getTopLevelWindow (i)))
        {
            EXPECT_EQ (about->getName(), "About Quorlane");
            about->closeButtonPressed();
        }

    runMessageLoop();
    EXPECT_EQ (findWindow<juce::DialogWindow>(), nullptr) << "the about box closes";
}
