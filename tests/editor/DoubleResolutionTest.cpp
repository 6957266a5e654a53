#include "EditorTestSupport.h"

#include "editor/DoubleResolution.h"
#include "editor/GFXDisplay.h"
#include "editor/GFXKnob.h"
#include "editor/QuorlaneEditor.h"
#include "editor/SkinImage.h"
#include "editor/SkinValues.h"
#include "framework/Resources.h"

#include <set>

using namespace EditorTest;

namespace
{
    // A picture enlarged by repeating each pixel has every 2 x 2 block of one colour.
    double shareOfUniformBlocks (const juce::Image& image)
    {
        int uniform = 0, blocks = 0;

        for (int y = 0; y + 1 < image.getHeight(); y += 2)
            for (int x = 0; x + 1 < image.getWidth(); x += 2)
            {
                const auto c = image.getPixelAt (x, y);
                uniform += (c == image.getPixelAt (x + 1, y) && c == image.getPixelAt (x, y + 1)
                            && c == image.getPixelAt (x + 1, y + 1)) ? 1 : 0;
                ++blocks;
            }

        return (double) uniform / (double) blocks;
    }

    // Each 2 x 2 block averaged into one pixel.
    juce::Image halved (const juce::Image& image)
    {
        juce::Image result (juce::Image::ARGB, image.getWidth() / 2, image.getHeight() / 2, true);

        for (int y = 0; y < result.getHeight(); ++y)
            for (int x = 0; x < result.getWidth(); ++x)
            {
                float sum[4] {};

                for (const auto& [dx, dy] : { std::pair { 0, 0 }, { 1, 0 }, { 0, 1 }, { 1, 1 } })
                {
                    const auto c = image.getPixelAt (2 * x + dx, 2 * y + dy);
                    sum[0] += c.getFloatAlpha(); sum[1] += c.getFloatRed(); sum[2] += c.getFloatGreen(); sum[3] += c.getFloatBlue();
                }

                result.setPixelAt (x, y, juce::Colour::fromFloatRGBA (sum[1] / 4, sum[2] / 4, sum[3] / 4, sum[0] / 4));
            }

        return result;
    }

    struct Difference { double mean, shareAbove; };

    // The mean absolute difference per colour channel (0..255), and the share
    // of pixels with a channel further off than the tolerance.
    Difference difference (const juce::Image& a, const juce::Image& b, int tolerance)
    {
        double total = 0;
        int above = 0;

        for (int y = 0; y < a.getHeight(); ++y)
            for (int x = 0; x < a.getWidth(); ++x)
            {
                const auto p = a.getPixelAt (x, y), q = b.getPixelAt (x, y);
                const int d[] { std::abs (p.getRed() - q.getRed()), std::abs (p.getGreen() - q.getGreen()),
                                std::abs (p.getBlue() - q.getBlue()) };
                total += d[0] + d[1] + d[2];
                above += (std::max ({ d[0], d[1], d[2] }) > tolerance) ? 1 : 0;
            }

        const double pixels = (double) a.getWidth() * a.getHeight();
        return { total / (pixels * 3), above / pixels };
    }
}

// The art exists twice, the second drawn afresh at double resolution: exactly
// twice the size, with the same frames, and not an enlargement of the first.
TEST (DoubleResolution, EveryImageHasATwinOfTwiceTheSizeWithTheSameFrames)
{
    // Every image the committed skin names, with its frames (the font's cells).
    const auto skin = juce::parseXML (Resources::getText ("skin.xml"));
    std::set<std::pair<juce::String, int>> images { { skin->getStringAttribute ("background"), 1 } };

    for (const auto* control : skin->getChildIterator())
        if (const auto* gfx = control->getChildByName ("gfx"))
        {
            const auto name = gfx->getStringAttribute ("resource");
            images.insert ({ name, gfx->hasAttribute ("fontHeight")
                                       ? SkinValues::loadImage (name).getHeight() / gfx->getIntAttribute ("fontHeight")
                                       : gfx->getIntAttribute ("framesNum", 1) });
        }

    ASSERT_GE (images.size(), 10u);

    for (const auto& [name, frames] : images)
    {
        const auto image = SkinValues::loadImage (name);
        const auto twin = SkinValues::loadImage (DoubleResolution::fileNameFor (name));
        ASSERT_TRUE (twin.isValid()) << name << ": no double-resolution image";
        EXPECT_EQ (twin.getBounds(), image.getBounds() * 2) << name;
        EXPECT_EQ (twin.getHeight() % (2 * frames), 0) << name << ": its " << frames << " frames are not twice the image's";
        EXPECT_TRUE (SkinImage::load (name).hasDoubleResolution()) << name;

        // The font's glyphs keep their pixel shapes and so are largely uniform blocks.
        if (frames < 100)
        {
            EXPECT_LT (shareOfUniformBlocks (twin), 0.9) << name << " looks enlarged, not drawn at double resolution";
        }
    }
}

// The whole window off screen at 1x and 2x: scaled down, the 2x picture
// matches the 1x one. Measured on the committed art: mean difference 1.2 of
// 255 per channel, 1.1 % of pixels off by more than 48 (edges of text and knob
// outlines antialias differently at the two sizes), and about 72 % uniform
// blocks, where an enlargement of the 1x picture would be all blocks.
TEST (DoubleResolution, TheWindowAtTwiceTheScaleMatchesTheWindowAtOnce)
{
    Quorlane plugin;
    QuorlaneEditor editor (plugin);
    const auto once = editor.createComponentSnapshot (editor.getLocalBounds(), true, 1.0f);
    const auto twice = editor.createComponentSnapshot (editor.getLocalBounds(), true, 2.0f);

    const auto file = juce::File (QUORLANE_TEST_OUTPUT_DIR).getChildFile ("editor-snapshot@2x.png");
    file.deleteFile();
    juce::FileOutputStream out (file);
    ASSERT_TRUE (out.openedOk());
    ASSERT_TRUE (juce::PNGImageFormat().writeImageToStream (twice, out));

    ASSERT_EQ (twice.getBounds(), once.getBounds() * 2);
    const auto d = difference (halved (twice), once, 48);
    EXPECT_LT (d.mean, 2.0);
    EXPECT_LT (d.shareAbove, 0.02);
    EXPECT_LT (shareOfUniformBlocks (twice), 0.8);
}

// Above scale 1 a knob shows its frame copied pixel for pixel from the twin
// strip, and at 125 % the twin reduced; the font has its twin too.
TEST (DoubleResolution, ControlsDrawFromTheTwinAboveScaleOne)
{
    Quorlane plugin;
    QuorlaneEditor editor (plugin);
    EXPECT_TRUE (find<GFXDisplay> (editor, "PresetNameDisplay").getFont().getStrip().hasDoubleResolution());
    auto& knob = find<GFXKnob> (editor, "Early Size");
    ASSERT_TRUE (knob.getStrip().hasDoubleResolution());

    const auto twin = SkinValues::loadImage ("KnobMain@2x.png");
    const int frameHeight = twin.getHeight() / knob.getNumFrames();
    const auto drawn = knob.createComponentSnapshot (knob.getLocalBounds(), false, 2.0f);
    ASSERT_EQ (drawn.getBounds(), juce::Rectangle<int> (twin.getWidth(), frameHeight));

    int differences = 0;
    for (int y = 0; y < drawn.getHeight(); ++y)
        for (int x = 0; x < drawn.getWidth(); ++x)
            differences += drawn.getPixelAt (x, y) != twin.getPixelAt (x, knob.getShownFrame() * frameHeight + y) ? 1 : 0;

    EXPECT_EQ (differences, 0);

    juce::Image at125 (juce::Image::ARGB, 44, 44, true), from1x (juce::Image::ARGB, 44, 44, true);
    {
        juce::Graphics g (at125);
        g.addTransform (juce::AffineTransform::scale (1.25f));
        knob.getStrip().draw (g, { 35, 35 }, { 0, 0, 35, 35 });
        juce::Graphics h (from1x);
        h.addTransform (juce::AffineTransform::scale (1.25f));
        h.drawImage (knob.getStrip().getImage(), 0, 0, 35, 35, 0, 0, 35, 35);
    }
    EXPECT_GT (difference (at125, from1x, 0).shareAbove, 0.1) << "125 % must draw the twin, not the 1x strip enlarged";
}
