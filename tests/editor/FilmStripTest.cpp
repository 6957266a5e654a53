#include "EditorTestSupport.h"

#include "editor/GFXAnimation.h"
#include "editor/GFXButton.h"
#include "editor/GFXDisplay.h"
#include "editor/GFXKnob.h"
#include "editor/QuorlaneEditor.h"

using namespace EditorTest;

namespace
{
    struct FilmStrip : ::testing::Test
    {
        Parameter& parameter (const char* name) { return *plugin.getParameterManager().findParameter (name); }

        Quorlane plugin;
        QuorlaneEditor editor { plugin };
    };
}

TEST_F (FilmStrip, KnobsFollowTheParameterAndDragAsOneHostGesture)
{
    auto& knob = find<GFXKnob> (editor, "Early Size");
    EXPECT_FLOAT_EQ ((float) knob.getValue(), parameter ("Early Size").getNormalisedValue()) << "shows the parameter once built";

    // 0.0085 is 0.5185 frames, which rounds up. The drag below starts from the last value.
    // Set as the host sets it, with the controls told at once.
    for (const auto& [value, frame] : { std::pair { 0.0f, 0 }, { 1.0f, 60 }, { 0.0085f, 1 }, { 0.5f, 30 } })
    {
        parameter ("Early Size").setNormalisedValue (value, ChangeOrigin::editor);
        parameter ("Early Size").flushDeferredNotification();
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

// The meters follow the processed level and rest when nothing is processed.
// A button held but dragged outside shows its released frame.
TEST_F (FilmStrip, MetersFollowTheLevelAnimationsClampAndRepaintOnlyOnANewFrameButtonsShowHeldOnlyWhileOver)
{
    auto& meter = find<GFXAnimation> (editor, "LeftVUMeter");
    auto& right = find<GFXAnimation> (editor, "RightVUMeter");
    plugin.prepareToPlay (44100.0, 512);
    editor.refreshMeters(); // asks for a reading
    juce::AudioBuffer<float> buffer (2, 512);
    juce::MidiBuffer midi;

    for (int i = 0; i < 512; ++i)
    {
        buffer.setSample (0, i, 0.9f * std::sin ((float) i * 0.1f));
        buffer.setSample (1, i, 0.5f * std::sin ((float) i * 0.07f));
    }

    for (int block = 0; block < 20; ++block)
        plugin.processBlock (buffer, midi);

    editor.refreshMeters();
    EXPECT_GT (meter.getFrame(), 0);
    EXPECT_GT (right.getFrame(), 0);
    plugin.releaseResources();
    editor.refreshMeters();
    EXPECT_EQ (meter.getFrame(), 0);
    EXPECT_EQ (right.getFrame(), 0);

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
