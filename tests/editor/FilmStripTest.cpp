#include "EditorTestSupport.h"

#include "editor/BitmapFont.h"
#include "editor/GFXAnimation.h"
#include "editor/GFXButton.h"
#include "editor/GFXDisplay.h"
#include "editor/GFXKnob.h"
#include "editor/GFXMultiStateButton.h"
#include "editor/GFXToggleButton.h"
#include "editor/GFXRocker.h"
#include "editor/NumericDisplay.h"
#include "editor/PatternNumberDisplay.h"
#include "editor/SkinValues.h"

using namespace EditorTest;

namespace
{
    const char* const stripSkin = R"(
        <PluginEditor>
          <Knob name="Knob"><links><link as="connectedTo" param="Early Size"/></links>
            <gfx resource="KnobMain.png" framesNum="61"/></Knob>
          <Animation name="Meter"><gfx resource="VUMeter.png" framesNum="12"/></Animation>
          <Button name="Button"><gfx resource="OptionsButton.png" framesNum="2"/></Button>
          <ToggleButton name="Toggle" style="3D"><links><link as="connectedTo" param="Late Bass Cut"/></links>
            <gfx resource="VUMeter.png" framesNum="4"/></ToggleButton>
          <MultiStateButton name="Multi" states="3"><links><link as="connectedTo" param="Modulation"/></links>
            <gfx resource="VUMeter.png" framesNum="3"/></MultiStateButton>
          <Rocker name="Rocker"><gfx resource="KnobEQ.png" framesNum="3"/></Rocker>
          <NumericDisplay name="Numeric" digitsNum="3" sign="yes" minValue="-50" maxValue="50">
            <links><link as="connectedTo" param="FX"/></links><gfx resource="KnobEQ.png" framesNum="11"/></NumericDisplay>
          <PatternNumberDisplay name="Pattern" notePatternMin="0" notePatternMax="11" numericPatternMin="12"
              numericPatternMax="99" bankAndSlotPatternMin="100" bankAndSlotPatternMax="127" slotMax="8"/>
          <Display name="Name" caretColour="FFBEF6FF" backgroundColour="FF232224">
            <links><link as="connectedTo" param="Current Preset Name"/></links>
            <gfx resource="Fonts.png" firstASCII=' ' fontHeight="9"/><size width="140" height="14"/></Display>
          <Display name="ReadOnly" readonly="yes"><gfx resource="Fonts.png" firstASCII="A" fontHeight="9"/>
            <size width="40" height="14"/></Display>
        </PluginEditor>)";

    struct FilmStrip : ::testing::Test
    {
        Parameter& parameter (const char* name) { return *plugin.getParameterManager().findParameter (name); }

        // As the host sets it, with the controls told at once.
        void set (const char* name, float value)
        {
            parameter (name).setNormalisedValue (value, ChangeOrigin::editor);
            parameter (name).flushDeferredNotification();
        }

        static void click (juce::Button& button) { button.triggerClick(); pumpMessages(); }

        Quorlane plugin;
        BasePluginEditor editor { plugin, skin (stripSkin).get() };
    };

    // Pixels of `image` that differ from the strip's cell starting at row `top`.
    int differingPixels (const juce::Image& image, const juce::Image& strip, int top)
    {
        int differences = 0;
        for (int y = 0; y < image.getHeight(); ++y)
            for (int x = 0; x < image.getWidth(); ++x)
                differences += image.getPixelAt (x, y) != strip.getPixelAt (x, top + y) ? 1 : 0;
        return differences;
    }
}

TEST_F (FilmStrip, KnobsFollowTheParameterAndDragAsOneHostGesture)
{
    auto& knob = find<GFXKnob> (editor, "Knob");
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

TEST_F (FilmStrip, AnimationsClampAndRepaintOnlyOnANewFrame)
{
    auto& meter = find<GFXAnimation> (editor, "Meter");

    for (const auto& [value, frame, redrawn] : { std::tuple { 1.7f, 11, true }, { -0.2f, 0, true }, { 0.5f, 6, true },
                                                 { 0.52f, 6, false } })
    {
        EXPECT_EQ (meter.setValue (value), redrawn) << value;
        EXPECT_EQ (meter.getFrame(), frame) << value;
    }
}

TEST_F (FilmStrip, ButtonsShowTheirHeldFrameOnlyWhileHeldAndOver)
{
    // Held but dragged outside shows the released frame.
    auto& button = find<GFXButton> (editor, "Button");
    for (const auto& [over, down, frame] : { std::tuple { false, false, 0 }, { true, true, 1 }, { false, true, 0 }, { true, false, 0 } })
        EXPECT_EQ (button.frameToShow (over, down), frame) << over << down;

    // Buttons with states: one frame per state, two per state in "3D".
    auto& toggle = find<GFXToggleButton> (editor, "Toggle");
    set ("Late Bass Cut", 1.0f);
    EXPECT_EQ (toggle.frameToShow (false, false), 2);
    EXPECT_EQ (toggle.frameToShow (true, true), 3);
    click (toggle);
    EXPECT_EQ (parameter ("Late Bass Cut").getNormalisedValue(), 0.0f);
    EXPECT_EQ (toggle.frameToShow (true, true), 1);

    auto& multi = find<GFXMultiStateButton> (editor, "Multi");
    set ("Modulation", 0.5f);

    for (const float expected : { 1.0f, 0.0f })
    {
        click (multi);
        EXPECT_EQ (parameter ("Modulation").getNormalisedValue(), expected) << "steps from the middle state and wraps";
        EXPECT_EQ (multi.frameToShow (false, false), (int) (expected * 2.0f));
    }

    auto& rocker = find<GFXRocker> (editor, "Rocker");
    for (const auto& [x, side] : { std::pair { 2, GFXRocker::Side::less }, { rocker.getWidth() - 2, GFXRocker::Side::more },
                                   { -1, GFXRocker::Side::none } })
        EXPECT_EQ (rocker.sideAt ({ x, 5 }), side) << x;
}

TEST_F (FilmStrip, DisplaysShowTheirParametersAndTextDisplaysEditOrRefuse)
{
    auto& numeric = find<NumericDisplay> (editor, "Numeric");
    parameter ("FX").setNormalisedValue (0.0f, ChangeOrigin::quiet);
    EXPECT_EQ (numeric.getCellFrames(), juce::Array<int> ({ NumericDisplay::minusFrame, -1, 5, 0 }));
    parameter ("FX").setNormalisedValue (1.0f, ChangeOrigin::quiet);
    EXPECT_EQ (numeric.getCellFrames(), juce::Array<int> ({ -1, -1, 5, 0 }));

    auto& pattern = find<PatternNumberDisplay> (editor, "Pattern");
    for (const auto& [number, text] : { std::pair { 1, "C#-2" }, { 42, "42" }, { 100, "A1" }, { 109, "B2" }, { 128, "" } })
        EXPECT_EQ (pattern.textFor (number), text) << number;
    EXPECT_EQ (PatternNumberDisplay::frameOf ('B'), 11);

    auto& name = find<GFXDisplay> (editor, "Name");
    auto& field = name.getTextEditor();
    auto& nameParameter = parameter ("Current Preset Name");

    EXPECT_EQ (name.getShownText(), nameParameter.getText());
    EXPECT_EQ (field.findColour (juce::CaretComponent::caretColourId), juce::Colour (0xffbef6ff));
    EXPECT_EQ (field.findColour (juce::TextEditor::backgroundColourId), juce::Colour (0xff232224));

    // The layout font gives every character one 7-pixel cell.
    field.setText ("Hall", false);
    EXPECT_EQ (field.getTextBounds ({ 2, 3 }).getBounds().getX() - field.getTextBounds ({ 1, 2 }).getBounds().getX(), 7);

    editor.commitDisplayText (name, "Big Hall");
    EXPECT_EQ (nameParameter.getText(), "Big Hall");

    auto& readOnly = find<GFXDisplay> (editor, "ReadOnly");
    EXPECT_TRUE (readOnly.getTextEditor().isReadOnly());
    bool clicks = true, childClicks = true;
    readOnly.getInterceptsMouseClicks (clicks, childClicks);
    EXPECT_FALSE (clicks || childClicks) << "a read-only display ignores clicks";
    EXPECT_EQ (readOnly.getFont().getCell ('A'), 0);
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

    // 'A' then a character without a cell, which draws nothing.
    const auto drawnAt = [&] (int scale)
    {
        juce::Image image (juce::Image::ARGB, 7 * scale, 9 * scale, true);
        juce::Graphics g (image);
        g.addTransform (juce::AffineTransform::scale ((float) scale));
        font.drawGlyph (g, 'A', 0, 0);
        font.drawGlyph (g, '\t', 0, 0);
        return image;
    };

    // Drawing copies exactly the character's cell; enlarged twice, from the double-resolution strip.
    ASSERT_TRUE (skinImage.hasDoubleResolution());
    EXPECT_EQ (differingPixels (drawnAt (1), skinImage.getImage(), 33 * 9), 0);
    EXPECT_GT (differingPixels (drawnAt (1), juce::Image (juce::Image::ARGB, 7, 9, true), 0), 5) << "the glyph for 'A' has ink";
    EXPECT_EQ (differingPixels (drawnAt (2), SkinValues::loadImage ("Fonts@2x.png"), 33 * 18), 0);
}
