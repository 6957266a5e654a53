#include "EditorTestSupport.h"

#include "editor/FocusRing.h"
#include "editor/GFXAnimation.h"
#include "editor/GFXKnob.h"
#include "editor/QuorlaneEditor.h"

using namespace EditorTest;

TEST (EditorSnapshot, MetersFollowTheProcessedLevel)
{
    Quorlane plugin;
    QuorlaneEditor editor (plugin);
    auto& left = find<GFXAnimation> (editor, "LeftVUMeter");
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
    EXPECT_GT (left.getFrame(), 0);
    EXPECT_GT (right.getFrame(), 0);

    plugin.releaseResources();
    editor.refreshMeters();
    EXPECT_EQ (left.getFrame(), 0) << "meters rest when nothing is processed";
    EXPECT_EQ (right.getFrame(), 0);
}

// The focused control wears the amber ring in the margin around it, as thick
// in skin pixels at 2x as at 1x, and keeps its own picture; the pictures are
// kept in the build folder for a look.
TEST (EditorSnapshot, TheFocusRingSurroundsTheFocusedControlAtEveryScale)
{
    Quorlane plugin;
    QuorlaneEditor editor (plugin);
    showWithFocus (editor);
    auto& knob = find<GFXKnob> (editor, "Predelay");
    const auto area = knob.getBoundsInParent().expanded (FocusRing::margin);
    const auto isRing = [] (juce::Colour c) { return c.getPerceivedBrightness() > 0.6f && c.getHue() > 0.05f && c.getHue() < 0.15f; };
    int ringPixels[2] {};

    for (const int scale : { 1, 2 })
    {
        editor.grabKeyboardFocus();
        pumpMessages();
        const auto plain = editor.createComponentSnapshot (area, true, (float) scale);
        knob.grabKeyboardFocus();
        pumpMessages();
        const auto focused = editor.createComponentSnapshot (area, true, (float) scale);
        save (editor.createComponentSnapshot (editor.getLocalBounds(), true, (float) scale),
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
