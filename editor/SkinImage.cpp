#include "SkinImage.h"

#include "DoubleResolution.h"
#include "SkinValues.h"

SkinImage::SkinImage (const juce::Image& normal, const juce::Image& doubleResolution)
    : image (normal)
{
    if (normal.isValid() && doubleResolution.isValid()
        && doubleResolution.getWidth() == normal.getWidth() * DoubleResolution::factor
        && doubleResolution.getHeight() == normal.getHeight() * DoubleResolution::factor)
        doubled = doubleResolution;
}

// The twins are the largest images of the plug-in (a knob strip at double
// resolution takes over a megabyte decoded) and many controls share one, so
// they are decoded once and shared through the image cache.
SkinImage SkinImage::load (const juce::String& fileName)
{
    const auto image = SkinValues::loadImage (fileName);

    if (! image.isValid())
        return {};

    const auto twinName = DoubleResolution::fileNameFor (fileName);
    const auto key = twinName.toLowerCase().hashCode64();
    auto twin = juce::ImageCache::getFromHashCode (key);

    if (! twin.isValid())
    {
        twin = SkinValues::loadImage (twinName);

        if (twin.isValid())
            juce::ImageCache::addImageToCache (twin, key);
    }

    return { image, twin };
}

bool SkinImage::wantsDoubleResolution (juce::Graphics& g)
{
    return g.getInternalContext().getPhysicalPixelScaleFactor() > 1.0f;
}

void SkinImage::draw (juce::Graphics& g, juce::Rectangle<int> target, juce::Rectangle<int> source) const
{
    if (doubled.isValid() && wantsDoubleResolution (g))
    {
        const auto twinSource = source * DoubleResolution::factor;
        g.drawImage (doubled, target.getX(), target.getY(), target.getWidth(), target.getHeight(),
                     twinSource.getX(), twinSource.getY(), twinSource.getWidth(), twinSource.getHeight());
        return;
    }

    g.drawImage (image, target.getX(), target.getY(), target.getWidth(), target.getHeight(),
                 source.getX(), source.getY(), source.getWidth(), source.getHeight());
}
