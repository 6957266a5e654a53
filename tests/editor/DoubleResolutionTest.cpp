#include "EditorTestSupport.h"

#include "editor/GFXDisplay.h"
#include "editor/GFXKnob.h"
#include "editor/QuorlaneEditor.h"
#include "editor/SkinValues.h"

using namespace EditorTest;

namespace
{
    struct Difference { double mean, shareAbove; };

    // Between `small` and `large` reduced to its size by averaging each 2 x 2
    // block: the mean absolute difference per colour channel (0..255), and the
    // share of pixels with a channel further off than 48.
    Difference difference (const juce::Image& small, const juce::Image& large)
    {
        double total = 0, above = 0;

        for (int y = 0; y < small.getHeight(); ++y)
            for (int x = 0; x < small.getWidth(); ++x)
            {
                double largest = 0;

                for (const auto channel : { &juce::Colour::getRed, &juce::Colour::getGreen, &juce::Colour::getBlue })
                {
                    double mean = 0;
                    for (int d = 0; d < 4; ++d)
                        mean += (large.getPixelAt (2 * x + d % 2, 2 * y + d / 2).*channel)() / 4.0;
                    largest = std::max (largest, std::abs ((small.getPixelAt (x, y).*channel)() - mean));
                    total += std::abs ((small.getPixelAt (x, y).*channel)() - mean);
                }

                above += largest > 48 ? 1 : 0;
            }

        const double pixels = (double) small.getWidth() * small.getHeight();
        return { total / (pixels * 3), above / pixels };
    }
}

// The whole window off screen at 1x and 2x: scaled down, the 2x picture
// matches the 1x one. Measured on the committed art: mean difference 1.2 of
// 255 per channel, 1.1 % of pixels off by more than 48 (edges of text and knob
// outlines antialias differently at the two sizes), and about 72 % uniform
// blocks, where an enlargement of the 1x picture would be all blocks.
TEST (DoubleResolution, TheWindowAndItsControlsDrawFromTheTwinsAboveScaleOne)
{
    Quorlane plugin;
    QuorlaneEditor editor (plugin);
    const auto once = editor.createComponentSnapshot (editor.getLocalBounds(), true, 1.0f);
    const auto twice = editor.createComponentSnapshot (editor.getLocalBounds(), true, 2.0f);
    save (once, "editor-snapshot.png");
    save (twice, "editor-snapshot@2x.png");

    ASSERT_EQ (once.getBounds(), juce::Rectangle<int> (633, 207));
    ASSERT_EQ (twice.getBounds(), once.getBounds() * 2);
    const auto d = difference (once, twice);
    EXPECT_LT (d.mean, 2.0);
    EXPECT_LT (d.shareAbove, 0.02);
    EXPECT_LT (shareOfUniformBlocks (twice), 0.8);

    // A knob shows its frame copied pixel for pixel from the twin strip, and
    // at 125 % the twin reduced; the font has its twin too.
    EXPECT_TRUE (find<GFXDisplay> (editor, "PresetNameDisplay").getFont().getStrip().hasDoubleResolution());
    auto& knob = find<GFXKnob> (editor, "Early Size");

    const auto twin = SkinValues::loadImage ("KnobMain@2x.png");
    const int frameHeight = twin.getHeight() / knob.getNumFrames();
    const auto drawn = knob.createComponentSnapshot (knob.getLocalBounds(), false, 2.0f);
    save (drawn, "knob@2x.png"); // art with partial alpha
    ASSERT_EQ (drawn.getBounds(), juce::Rectangle<int> (twin.getWidth(), frameHeight));
    EXPECT_EQ (differingPixels (drawn, twin, { 0, knob.getShownFrame() * frameHeight }), 0);

    juce::Image at125 (juce::Image::ARGB, 44, 44, true), from1x (juce::Image::ARGB, 44, 44, true);
    {
        juce::Graphics g (at125);
        g.addTransform (juce::AffineTransform::scale (1.25f));
        knob.getStrip().draw (g, { 35, 35 }, { 0, 0, 35, 35 });
        juce::Graphics h (from1x);
        h.addTransform (juce::AffineTransform::scale (1.25f));
        h.drawImage (knob.getStrip().getImage(), 0, 0, 35, 35, 0, 0, 35, 35);
    }
    EXPECT_GT (differingPixels (at125, from1x), 44 * 44 / 10) << "125 % must draw the twin, not the 1x strip enlarged";
}
