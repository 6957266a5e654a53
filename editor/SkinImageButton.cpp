#include "SkinImageButton.h"

SkinImageButton::SkinImageButton (const juce::String& name, const juce::String& imageFileName)
    : juce::Button (name), image (SkinImage::load (imageFileName))
{
}

juce::Rectangle<int> SkinImageButton::getFrameBounds() const
{
    return { image.getWidth(), image.getHeight() / 2 };
}

void SkinImageButton::paintButton (juce::Graphics& g, bool, bool isDown)
{
    const auto frame = getFrameBounds();
    image.draw (g, getLocalBounds(), frame.withY (isDown ? frame.getHeight() : 0));
}
