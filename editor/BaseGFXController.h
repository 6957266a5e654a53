#pragma once

#include "BlinkingComponent.h"
#include "SkinImage.h"

#include <juce_gui_basics/juce_gui_basics.h>

// The film-strip state shared by the strip-based controls: a vertical column
// of equally tall frames, plus the control's position and size from the skin.
class BaseGFXController : public virtual BlinkingComponent
{
public:
    int getNumFrames() const noexcept { return framesNum; }
    int getFrameWidth() const noexcept { return frameWidth; }
    bool hasStrip() const noexcept { return strip.isValid(); }
    const SkinImage& getStrip() const noexcept { return strip; }

    // floor ((frames - 1) * proportion + 0.5), kept inside the strip.
    int frameFor (double proportion) const noexcept;

protected:
    // The `gfx` child: loads the strip (and its double-resolution twin) and
    // sets the frame size. Returns true when an image was loaded. A framesNum
    // below 1 reads as 1.
    bool loadStrip (const juce::XmlElement& element);

    // `gfx`, then `size` (only when no strip gave the size), then `pos`
    // (left unchanged when absent).
    juce::Rectangle<int> loadStripGeometry (const juce::XmlElement& element);

    juce::Rectangle<int> getSkinBounds() const;

    void drawFrame (juce::Graphics& g, int frame) const;

    virtual void frameSizeChanged() {}

private:
    SkinImage strip;
    int framesNum = 1;
    int frameWidth = 0, frameHeight = 0;
    juce::Rectangle<int> skinBounds;
};
