#include "BaseGFXController.h"

#include "SkinValues.h"

#include <cmath>

int BaseGFXController::frameFor (double proportion) const noexcept
{
    const int frame = (int) std::floor ((framesNum - 1) * proportion + 0.5);
    return juce::jlimit (0, juce::jmax (0, framesNum - 1), frame);
}

bool BaseGFXController::loadStrip (const juce::XmlElement& element)
{
    const auto* gfx = element.getChildByName ("gfx");

    if (gfx == nullptr)
        return false;

    framesNum = juce::jmax (1, SkinValues::readInt (*gfx, "framesNum", 1));

    if (! gfx->hasAttribute ("resource"))
        return false;

    auto image = SkinImage::load (gfx->getStringAttribute ("resource"));

    if (! image.isValid())
        return false;

    strip = image;
    const int newWidth = strip.getWidth();
    const int newHeight = strip.getHeight() / framesNum;

    if (newWidth != frameWidth || newHeight != frameHeight)
    {
        frameWidth = newWidth;
        frameHeight = newHeight;
        frameSizeChanged();
    }

    return true;
}

juce::Rectangle<int> BaseGFXController::loadStripGeometry (const juce::XmlElement& element)
{
    const bool loaded = loadStrip (element);
    const auto read = SkinValues::readBounds (element, skinBounds);
    skinBounds = loaded ? skinBounds.withPosition (read.getPosition()) : read;
    return getSkinBounds();
}

juce::Rectangle<int> BaseGFXController::getSkinBounds() const
{
    return hasStrip() ? skinBounds.withSize (frameWidth, frameHeight) : skinBounds;
}

void BaseGFXController::drawFrame (juce::Graphics& g, int frame) const
{
    if (! hasStrip() || frameHeight <= 0)
        return;

    strip.draw (g, { frameWidth, frameHeight }, { 0, frame * frameHeight, frameWidth, frameHeight });
}
