// JUCE's PNG format as this build has it (libpng on Linux, stb_image on
// Windows): the skin's film strips are PNGs, and the renderer writes its decay
// plots as PNG. (JPEG, which JUCE links too, is never read or written.)

#include <juce_graphics/juce_graphics.h>

#include <gtest/gtest.h>

TEST (ImageFormats, PngKeepsEveryPixelWithOrWithoutAlpha)
{
    for (const auto format : { juce::Image::ARGB, juce::Image::RGB })
    {
        juce::Image image (format, 37, 23, true);
        for (int y = 0; y < 23; ++y)
            for (int x = 0; x < 37; ++x)
                image.setPixelAt (x, y, juce::Colour ((juce::uint8) (x * 7), (juce::uint8) (y * 11), (juce::uint8) (x * y),
                                                      (juce::uint8) (format == juce::Image::ARGB ? (x * 37 + y) % 256 : 255)));

        juce::MemoryOutputStream out;
        ASSERT_TRUE (juce::PNGImageFormat().writeImageToStream (image, out));
        const auto back = juce::ImageFileFormat::loadFrom (out.getData(), out.getDataSize());

        ASSERT_EQ (back.getBounds(), image.getBounds());
        EXPECT_EQ (back.hasAlphaChannel(), format == juce::Image::ARGB);
        EXPECT_EQ (back.getPixelAt (0, 0).getAlpha(), image.getPixelAt (0, 0).getAlpha());

        // Premultiplied as images keep them: alpha rounding only.
        int largest = 0;
        for (int y = 0; y < 23; ++y)
            for (int x = 0; x < 37; ++x)
            {
                const auto p = image.getPixelAt (x, y).getPixelARGB(), q = back.getPixelAt (x, y).getPixelARGB();
                for (const auto d : { p.getRed() - q.getRed(), p.getGreen() - q.getGreen(), p.getBlue() - q.getBlue(), p.getAlpha() - q.getAlpha() })
                    largest = std::max (largest, std::abs (d));
            }

        EXPECT_LE (largest, format == juce::Image::ARGB ? 2 : 0);
    }
}
