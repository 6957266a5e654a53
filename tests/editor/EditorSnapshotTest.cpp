#include "EditorTestSupport.h"

#include "editor/FocusRing.h"
#include "editor/GFXAnimation.h"
#include "editor/GFXKnob.h"
#include "editor/QuorlaneEditor.h"

using namespace EditorTest;

namespace
{
    juce::Image snapshot (juce::Component& c, juce::Rectangle<int> area, float scale = 1.0f)
    {
        return c.createComponentSnapshot (area, true, scale);
    }

    bool samePixels (const juce::Image& a, const juce::Image& b)
    {
        if (a.getBounds() != b.getBounds())
            return false;

        for (int y = 0; y < a.getHeight(); ++y)
            for (int x = 0; x < a.getWidth(); ++x)
                if (a.getPixelAt (x, y) != b.getPixelAt (x, y))
                    return false;

        return true;
    }

    void save (const juce::Image& image, const char* name)
    {
        const auto file = juce::File (QUORLANE_TEST_OUTPUT_DIR).getChildFile (name);
        file.deleteFile();
        juce::FileOutputStream out (file);
        ASSERT_TRUE (out.openedOk() && juce::PNGImageFormat().writeImageToStream (image, out));
    }
}

// The whole product window rendered off screen: its size, a knob for each
// host parameter whose picture moves with the parameter, and the picture kept
// in the build folder for a look.
TEST (EditorSnapshot, TheProductWindowDrawsEveryKnobFromItsParameter)
{
    Quorlane plugin;
    QuorlaneEditor editor (plugin);
    ASSERT_EQ (editor.getWidth(), 633);
    ASSERT_EQ (editor.getHeight(), 207);

    save (snapshot (editor, editor.getLocalBounds()), "editor-snapshot.png");

    int knobs = 0;

    for (auto* control : editor.getControllers())
    {
        auto* knob = dynamic_cast<GFXKnob*> (control);

        if (knob == nullptr)
            continue;

        auto* parameter = knob->getParameter();
        ASSERT_NE (parameter, nullptr) << knob->getName();
        EXPECT_LT (parameter->getIndex(), 20u);
        ++knobs;

        const auto area = knob->getBoundsInParent();

        parameter->setNormalisedValue (0.0f, ChangeOrigin::editor);
        parameter->flushDeferredNotification();
        const auto low = snapshot (editor, area);

        parameter->setNormalisedValue (1.0f, ChangeOrigin::editor);
        parameter->flushDeferredNotification();
        const auto high = snapshot (editor, area);

        EXPECT_FALSE (samePixels (low, high)) << knob->getName().toStdString() << " does not move";
    }

    EXPECT_EQ (knobs, 20);
}

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
        const auto plain = snapshot (editor, area, (float) scale);
        knob.grabKeyboardFocus();
        pumpMessages();
        const auto focused = snapshot (editor, area, (float) scale);
        save (snapshot (editor, editor.getLocalBounds(), (float) scale), scale == 1 ? "editor-focus.png" : "editor-focus@2x.png");

        const auto inner = juce::Rectangle<int> (FocusRing::margin, FocusRing::margin, knob.getWidth(), knob.getHeight()) * scale;
        int& ring = ringPixels[scale - 1];

        for (int y = 0; y < focused.getHeight(); ++y)
            for (int x = 0; x < focused.getWidth(); ++x)
            {
                if (inner.contains (x, y))
                    ASSERT_EQ (focused.getPixelAt (x, y), plain.getPixelAt (x, y)) << "the ring covers the knob at " << x << "," << y;
                else
                    ring += isRing (focused.getPixelAt (x, y)) ? 1 : 0;
            }
    }

    const int perimeter = 2 * (area.getWidth() + area.getHeight());
    EXPECT_GT (ringPixels[0], perimeter * 3 / 4) << "a ring all round at 1x";
    EXPECT_GT (ringPixels[1], ringPixels[0] * 3) << "twice as long and twice as thick at 2x";
}
