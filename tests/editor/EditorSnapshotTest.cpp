#include "EditorTestSupport.h"

#include "editor/GFXAnimation.h"
#include "editor/GFXKnob.h"
#include "editor/QuorlaneEditor.h"

using namespace EditorTest;

namespace
{
    juce::Image snapshot (juce::Component& c, juce::Rectangle<int> area)
    {
        return c.createComponentSnapshot (area, true, 1.0f);
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

    const auto whole = snapshot (editor, editor.getLocalBounds());
    const auto file = juce::File (QUORLANE_TEST_OUTPUT_DIR).getChildFile ("editor-snapshot.png");
    file.deleteFile();
    {
        juce::FileOutputStream out (file);
        ASSERT_TRUE (out.openedOk());
        ASSERT_TRUE (juce::PNGImageFormat().writeImageToStream (whole, out));
    }

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
