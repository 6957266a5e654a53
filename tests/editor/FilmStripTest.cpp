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
}

TEST (FilmStrip, KnobFramesFollowTheValueAndTheParameter)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (stripSkin).get());
    auto& knob = find<GFXKnob> (editor, "Knob");
    auto* earlySize = plugin.getParameterManager().findParameter ("Early Size");

    EXPECT_EQ (knob.getSliderStyle(), juce::Slider::RotaryVerticalDrag);
    EXPECT_FLOAT_EQ ((float) knob.getValue(), earlySize->getNormalisedValue()) << "shows the parameter once built";

    // 0.0085 is 0.5185 frames, which rounds up.
    for (const auto& [value, frame] : { std::pair { 0.5f, 30 }, std::pair { 0.0f, 0 }, std::pair { 1.0f, 60 }, std::pair { 0.0085f, 1 } })
    {
        earlySize->setNormalisedValue (value, true);
        earlySize->flushDeferredNotification();
        EXPECT_EQ (knob.getShownFrame(), frame) << value;
    }

    knob.setValue (0.25, juce::sendNotificationSync);
    EXPECT_FLOAT_EQ (earlySize->getNormalisedValue(), 0.25f) << "a user movement writes the parameter";
}

TEST (FilmStrip, KnobDragsAreOneHostGesture)
{
    struct GestureListener : juce::AudioProcessorParameter::Listener
    {
        void parameterValueChanged (int, float) override { ++changes; }
        void parameterGestureChanged (int, bool starting) override { gestures.add (starting); }
        int changes = 0;
        juce::Array<bool> gestures;
    };

    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (stripSkin).get());
    auto& knob = find<GFXKnob> (editor, "Knob");
    GestureListener host;
    plugin.getHostParameter (0)->addListener (&host);

    const auto source = juce::Desktop::getInstance().getMainMouseSource();
    const auto at = [&] (int y, juce::Time t)
    {
        return juce::MouseEvent (source, { 10.0f, (float) y }, {}, juce::MouseInputSource::defaultPressure,
                                 0.0f, 0.0f, 0.0f, 0.0f, &knob, &knob, t, { 10.0f, 20.0f }, t, 1, false);
    };

    const auto start = juce::Time::getCurrentTime();
    knob.mouseDown (at (20, start));
    knob.mouseDrag (at (0, start + juce::RelativeTime::milliseconds (50)));
    knob.mouseUp (at (0, start + juce::RelativeTime::milliseconds (60)));

    EXPECT_EQ (host.gestures, juce::Array<bool> ({ true, false }));
    EXPECT_GT (host.changes, 0);
    EXPECT_GT (plugin.getPluginParameter (0)->getNormalisedValue(), 0.5f) << "dragging up turns the knob up";
    plugin.getHostParameter (0)->removeListener (&host);
}

TEST (FilmStrip, AnimationsClampAndRepaintOnlyOnANewFrame)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (stripSkin).get());
    auto& meter = find<GFXAnimation> (editor, "Meter");

    EXPECT_TRUE (meter.setValue (1.7f));
    EXPECT_EQ (meter.getFrame(), 11);
    EXPECT_TRUE (meter.setValue (-0.2f));
    EXPECT_EQ (meter.getFrame(), 0);

    EXPECT_TRUE (meter.setValue (0.5f));
    EXPECT_EQ (meter.getFrame(), 6);
    EXPECT_FALSE (meter.setValue (0.52f)) << "the same frame is not drawn again";
}

TEST (FilmStrip, ButtonsShowTheirHeldFrameOnlyWhileHeldAndOver)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (stripSkin).get());
    auto& button = find<GFXButton> (editor, "Button");

    EXPECT_EQ (button.frameToShow (false, false), 0);
    EXPECT_EQ (button.frameToShow (true, true), 1);
    EXPECT_EQ (button.frameToShow (false, true), 0) << "held but dragged outside";
    EXPECT_EQ (button.frameToShow (true, false), 0);

    // Buttons with states: one frame per state, two per state in "3D".
    auto* bassCut = plugin.getParameterManager().findParameter ("Late Bass Cut");
    auto& toggle = find<GFXToggleButton> (editor, "Toggle");
    bassCut->setNormalisedValue (1.0f, true);
    bassCut->flushDeferredNotification();
    EXPECT_EQ (toggle.frameToShow (false, false), 2);
    EXPECT_EQ (toggle.frameToShow (true, true), 3);
    toggle.triggerClick();
    pumpMessages();
    EXPECT_EQ (bassCut->getNormalisedValue(), 0.0f);
    EXPECT_EQ (toggle.frameToShow (true, true), 1);

    auto& multi = find<GFXMultiStateButton> (editor, "Multi");
    auto* modulation = plugin.getParameterManager().findParameter ("Modulation");
    modulation->setNormalisedValue (0.5f, true);
    modulation->flushDeferredNotification();
    EXPECT_EQ (multi.getState(), 1);

    for (const float expected : { 1.0f, 0.0f })
    {
        multi.triggerClick();
        pumpMessages();
        EXPECT_EQ (modulation->getNormalisedValue(), expected) << "steps and wraps";
        EXPECT_EQ (multi.frameToShow (false, false), (int) (expected * 2.0f));
    }

    auto& rocker = find<GFXRocker> (editor, "Rocker");
    EXPECT_EQ (rocker.sideAt ({ 2, 5 }), GFXRocker::Side::less);
    EXPECT_EQ (rocker.sideAt ({ rocker.getWidth() - 2, 5 }), GFXRocker::Side::more);
    EXPECT_EQ (rocker.sideAt ({ -1, 5 }), GFXRocker::Side::none);
}

TEST (FilmStrip, NumberDisplaysPickTheirCells)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (stripSkin).get());
    auto* fx = plugin.getParameterManager().findParameter ("FX");
    auto& numeric = find<NumericDisplay> (editor, "Numeric");

    fx->setNormalisedValue (0.0f, false);
    EXPECT_EQ (numeric.getCellFrames(), juce::Array<int> ({ NumericDisplay::minusFrame, -1, 5, 0 }));
    fx->setNormalisedValue (1.0f, false);
    EXPECT_EQ (numeric.getCellFrames(), juce::Array<int> ({ -1, -1, 5, 0 }));

    auto& pattern = find<PatternNumberDisplay> (editor, "Pattern");
    EXPECT_EQ (pattern.textFor (1), "C#-2");
    EXPECT_EQ (pattern.textFor (42), "42");
    EXPECT_EQ (pattern.textFor (100), "A1");
    EXPECT_EQ (pattern.textFor (109), "B2");
    EXPECT_EQ (pattern.textFor (128), "");
    EXPECT_EQ (PatternNumberDisplay::frameOf ('B'), 11);
}

TEST (BitmapFont, MapsCharactersToCellsOfTheStrip)
{
    const auto skinImage = SkinImage::load ("Fonts.png");
    const auto& strip = skinImage.getImage();
    BitmapFont font;
    font.setStrip (skinImage, ' ', 9);

    ASSERT_EQ (font.getNumCells(), 192);
    EXPECT_EQ (font.getCell (' '), 0);
    EXPECT_EQ (font.getCell ('A'), 33);
    EXPECT_EQ (font.getCell ((juce::juce_wchar) 223), 191);
    EXPECT_EQ (font.getCell ((juce::juce_wchar) 224), -1);
    EXPECT_EQ (font.getCell ('\t'), -1);

    // Drawing copies exactly the character's cell.
    juce::Image canvas (juce::Image::ARGB, 7, 9, true);
    {
        juce::Graphics g (canvas);
        font.drawGlyph (g, 'A', 0, 0);
        font.drawGlyph (g, '\t', 0, 0);
    }

    int differences = 0, inked = 0;
    for (int y = 0; y < 9; ++y)
        for (int x = 0; x < 7; ++x)
        {
            const auto expected = strip.getPixelAt (x, 33 * 9 + y);
            differences += canvas.getPixelAt (x, y) != expected ? 1 : 0;
            inked += expected.getAlpha() > 0 ? 1 : 0;
        }

    EXPECT_EQ (differences, 0);
    EXPECT_GT (inked, 5) << "the glyph for 'A' has ink";

    // Enlarged twice, the glyph comes pixel for pixel from the double-resolution strip.
    ASSERT_TRUE (skinImage.hasDoubleResolution());
    juce::Image sharp (juce::Image::ARGB, 14, 18, true);
    {
        juce::Graphics g (sharp);
        g.addTransform (juce::AffineTransform::scale (2.0f));
        font.drawGlyph (g, 'A', 0, 0);
    }

    const auto doubled = SkinValues::loadImage ("Fonts@2x.png");
    differences = 0;
    for (int y = 0; y < 18; ++y)
        for (int x = 0; x < 14; ++x)
            differences += sharp.getPixelAt (x, y) != doubled.getPixelAt (x, 33 * 18 + y) ? 1 : 0;

    EXPECT_EQ (differences, 0);
}

TEST (BitmapFont, DisplaysShowEditAndRefuse)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (stripSkin).get());
    auto& name = find<GFXDisplay> (editor, "Name");
    auto* nameParameter = plugin.getParameterManager().findParameter ("Current Preset Name");

    EXPECT_EQ (name.getShownText(), nameParameter->getText());
    EXPECT_EQ (name.getTextEditor().findColour (juce::CaretComponent::caretColourId), juce::Colour (0xffbef6ff));
    EXPECT_EQ (name.getTextEditor().findColour (juce::TextEditor::backgroundColourId), juce::Colour (0xff232224));

    // The layout font gives every character one 7-pixel cell.
    name.getTextEditor().setText ("Hall", false);
    EXPECT_EQ (name.getTextEditor().getTextBounds ({ 2, 3 }).getBounds().getX()
                 - name.getTextEditor().getTextBounds ({ 1, 2 }).getBounds().getX(), 7);

    editor.commitDisplayText (name, "Big Hall");
    EXPECT_EQ (nameParameter->getText(), "Big Hall");

    auto& readOnly = find<GFXDisplay> (editor, "ReadOnly");
    EXPECT_TRUE (readOnly.getTextEditor().isReadOnly());
    bool clicks = true, childClicks = true;
    readOnly.getInterceptsMouseClicks (clicks, childClicks);
    EXPECT_FALSE (clicks || childClicks) << "a read-only display ignores clicks";
    EXPECT_EQ (readOnly.getFont().getCell ('A'), 0);
}
