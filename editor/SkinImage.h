#pragma once

#include <juce_graphics/juce_graphics.h>

// An image of the skin together with its double-resolution twin. Geometry is
// always that of the image the skin names; where the graphics context maps a
// skin pixel onto more than one device pixel, the twin is drawn instead, so
// the picture stays sharp at any display scale or zoom.
class SkinImage
{
public:
    SkinImage() = default;

    // The twin is kept only when it is exactly twice the size of the image;
    // otherwise the image alone is drawn at every scale.
    SkinImage (const juce::Image& image, const juce::Image& doubleResolution);

    // The image compiled in under this file name and its twin under the
    // double-resolution name; invalid when the image itself is missing.
    static SkinImage load (const juce::String& fileName);

    bool isValid() const noexcept { return image.isValid(); }
    bool hasDoubleResolution() const noexcept { return doubled.isValid(); }
    const juce::Image& getImage() const noexcept { return image; }
    int getWidth() const noexcept { return image.getWidth(); }
    int getHeight() const noexcept { return image.getHeight(); }

    bool operator== (const SkinImage& other) const noexcept { return image == other.image && doubled == other.doubled; }
    bool operator!= (const SkinImage& other) const noexcept { return ! operator== (other); }

    // Draws the `source` area (in the image's own pixels) into `target`.
    void draw (juce::Graphics& g, juce::Rectangle<int> target, juce::Rectangle<int> source) const;

    // True where the context puts more than one device pixel on a skin pixel.
    static bool wantsDoubleResolution (juce::Graphics& g);

private:
    juce::Image image, doubled;
};
