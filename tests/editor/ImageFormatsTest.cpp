// JUCE's PNG and JPEG formats as this build has them (libpng on Linux, and
// stb_image behind libjpeg's interface there and behind both on Windows): the
// skin's film strips are PNGs, and the renderer writes its decay plots as PNG.

#include <juce_graphics/juce_graphics.h>

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{
    juce::Image pattern (juce::Image::PixelFormat format, int width, int height)
    {
        juce::Image image (format, width, height, true);

        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                image.setPixelAt (x, y, juce::Colour ((juce::uint8) (x * 7), (juce::uint8) (y * 11), (juce::uint8) (x * y),
                                                      (juce::uint8) (format == juce::Image::ARGB ? (x * 37 + y) % 256 : 255)));

        return image;
    }

    juce::MemoryBlock encode (juce::ImageFileFormat& format, const juce::Image& image)
    {
        juce::MemoryOutputStream out;
        EXPECT_TRUE (format.writeImageToStream (image, out)) << format.getFormatName();
        return out.getMemoryBlock();
    }

    juce::Image decode (const juce::MemoryBlock& bytes)
    {
        return juce::ImageFileFormat::loadFrom (bytes.getData(), bytes.getSize());
    }

    // The largest difference of any channel of any pixel, premultiplied as
    // images keep them.
    int largestDifference (const juce::Image& a, const juce::Image& b)
    {
        int largest = 0;

        for (int y = 0; y < a.getHeight(); ++y)
            for (int x = 0; x < a.getWidth(); ++x)
            {
                const auto p = a.getPixelAt (x, y).getPixelARGB(), q = b.getPixelAt (x, y).getPixelARGB();

                for (const auto d : { p.getRed() - q.getRed(), p.getGreen() - q.getGreen(), p.getBlue() - q.getBlue(), p.getAlpha() - q.getAlpha() })
                    largest = std::max (largest, std::abs (d));
            }

        return largest;
    }
}

TEST (ImageFormats, PngKeepsEveryPixelWithOrWithoutAlpha)
{
    for (const auto format : { juce::Image::ARGB, juce::Image::RGB })
    {
        const auto image = pattern (format, 37, 23);
        juce::PNGImageFormat png;
        const auto back = decode (encode (png, image));

        ASSERT_TRUE (back.isValid());
        EXPECT_EQ (back.getWidth(), 37);
        EXPECT_EQ (back.getHeight(), 23);
        EXPECT_EQ (back.hasAlphaChannel(), format == juce::Image::ARGB);
        EXPECT_LE (largestDifference (image, back), format == juce::Image::ARGB ? 2 : 0) << "alpha rounding only";
        EXPECT_EQ (back.getPixelAt (0, 0).getAlpha(), image.getPixelAt (0, 0).getAlpha());
    }
}

TEST (ImageFormats, JpegComesBackCloseToWhatWasWritten)
{
    // Smooth, as photographs are: JPEG blurs sharp colour edges.
    juce::Image image (juce::Image::RGB, 64, 48, false);

    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x)
            image.setPixelAt (x, y, juce::Colour ((juce::uint8) (x * 3), (juce::uint8) (y * 4), (juce::uint8) (x + y)));

    juce::JPEGImageFormat jpeg;
    jpeg.setQuality (0.95f);
    const auto bytes = encode (jpeg, image);
    const auto back = decode (bytes);

    ASSERT_TRUE (back.isValid());
    EXPECT_EQ (back.getWidth(), 64);
    EXPECT_EQ (back.getHeight(), 48);
    EXPECT_FALSE (back.hasAlphaChannel());
    EXPECT_LE (largestDifference (image, back), 12) << "lossy, but the same picture";
}
