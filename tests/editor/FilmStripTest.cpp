#include "EditorTestSupport.h"

#include "editor/BitmapFont.h"
#include "editor/GFXAnimation.h"
#include "editor/GFXButton.h"
#include "editor/GFXDisplay.h"
#include "editor/GFXKnob.h"
#include "editor/QuorlaneEditor.h"
#include "editor/SkinImage.h"

using namespace EditorTest;

namespace
{
    struct FilmStrip : ::testing::Test
    {
        Parameter& parameter (const char* name) { return *plugin.getParameterManager().findParameter (name); }

        // As the host sets it, with the controls told at once.
        void set (const char* name, float value)
        {
            parameter (name).setNormalisedValue (value, ChangeOrigin::editor);
            parameter (name).flushDeferredNotification();
        }

        Quorlane plugin;
        QuorlaneEditor editor { plugin };
    };
}

TEST_F (FilmStrip, KnobsFollowTheParameterAndDragAsOneHostGesture)
{
    auto& knob = find<GFXKnob> (editor, "Early Size");
    EXPECT_FLOAT_EQ ((float) knob.getValue(), parameter ("Early Size").getNormalisedValue()) << "shows the parameter once built";

    // 0.0085 is 0.5185 frames, which rounds up. The drag below starts from the last value.
    for (const auto& [value, frame] : { std::pair { 0.0f, 0 }, { 1.0f, 60 }, { 0.0085f, 1 }, { 0.5f, 30 } })
    {
        set ("Early Size", value);
        EXPECT_EQ (knob.getShownFrame(), frame) << value;
    }

    HostGestures host (plugin);

    const auto source = juce::Desktop::getInstance().getMainMouseSource();
    const auto start = juce::Time::getCurrentTime();
    const auto at = [&] (int y, int milliseconds)
    {
        const auto t = start + juce::RelativeTime::milliseconds (milliseconds);
        return juce::MouseEvent (source, { 10.0f, (float) y }, {}, juce::MouseInputSource::defaultPressure,
                                 0.0f, 0.0f, 0.0f, 0.0f, &knob, &knob, t, { 10.0f, 20.0f }, t, 1, false);
    };

    knob.mouseDown (at (20, 0));
    knob.mouseDrag (at (0, 50));
    knob.mouseUp (at (0, 60));

    EXPECT_EQ (host.begun[0], 1);
    EXPECT_EQ (host.ended[0], 1);
    EXPECT_GT (host.changes[0], 0);
    EXPECT_GT (plugin.getPluginParameter (0)->getNormalisedValue(), 0.5f) << "dragging up turns the knob up from the middle";
}

// A button held but dragged outside shows its released frame.
TEST_F (FilmStrip, AnimationsClampAndRepaintOnlyOnANewFrameButtonsShowHeldOnlyWhileOver)
{
    auto& meter = find<GFXAnimation> (editor, "LeftVUMeter");

    for (const auto& [value, frame, redrawn] : { std::tuple { 1.7f, 11, true }, { -0.2f, 0, true }, { 0.5f, 6, true },
                                                 { 0.52f, 6, false } })
    {
        EXPECT_EQ (meter.setValue (value), redrawn) << value;
        EXPECT_EQ (meter.getFrame(), frame) << value;
    }

    auto& button = find<GFXButton> (editor, "OptionsButton");
    for (const auto& [over, down, frame] : { std::tuple { false, false, 0 }, { true, true, 1 }, { false, true, 0 }, { true, false, 0 } })
        EXPECT_EQ (button.frameToShow (over, down), frame) << over << down;
}

TEST_F (FilmStrip, TextDisplaysShowTheirParametersInTheSkinsColoursOrRefuseEdits)
{
    auto& name = find<GFXDisplay> (editor, "PresetNameDisplay");
    auto& field = name.getTextEditor();
    EXPECT_EQ (name.getShownText(), parameter ("Current Preset Name").getText());
    EXPECT_EQ (field.findColour (juce::CaretComponent::caretColourId), juce::Colour (0xffbef6ff));
    EXPECT_EQ (field.findColour (juce::TextEditor::backgroundColourId), juce::Colour (0xff232224));

    // The layout font gives every character one 7-pixel cell.
    field.setText ("Hall", false);
    EXPECT_EQ (field.getTextBounds ({ 2, 3 }).getBounds().getX() - field.getTextBounds ({ 1, 2 }).getBounds().getX(), 7);

    auto& readOnly = find<GFXDisplay> (editor, "DecayTimeDisplay");
    EXPECT_TRUE (readOnly.getTextEditor().isReadOnly());
    bool clicks = true, childClicks = true;
    readOnly.getInterceptsMouseClicks (clicks, childClicks);
    EXPECT_FALSE (clicks || childClicks) << "a read-only display ignores clicks";
}

TEST (BitmapFont, MapsCharactersToCellsOfTheStrip)
{
    const auto skinImage = SkinImage::load ("Fonts.png");
    BitmapFont font;
    font.setStrip (skinImage, ' ', 9);

    ASSERT_EQ (font.getNumCells(), 192);
    for (const auto& [character, cell] : { std::pair<juce::juce_wchar, int> { ' ', 0 }, { 'A', 33 }, { 223, 191 }, { 224, -1 },
                                           { '\t', -1 } })
        EXPECT_EQ (font.getCell (character), cell) << (int) character;

    // Drawing copies exactly the character's cell, and nothing for a character without one.
    juce::Image drawn (juce::Image::ARGB, 7, 9, true);
    {
        juce::Graphics g (drawn);
        font.drawGlyph (g, 'A', 0, 0);
        font.drawGlyph (g, '\t', 0, 0);
    }
    EXPECT_EQ (differingPixels (drawn, skinImage.getImage(), { 0, 33 * 9 }), 0);
}
