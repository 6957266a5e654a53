#pragma once

#include "SkinImage.h"

#include <juce_gui_basics/juce_gui_basics.h>

// A button drawn from a two-frame strip of our art: the upper frame at rest,
// the lower one while held down, from the double-resolution twin where the
// display enlarges it. Its natural size is one frame.
class SkinImageButton : public juce::Button
{
public:
    SkinImageButton (const juce::String& name, const juce::String& imageFileName);

    const SkinImage& getImage() const noexcept { return image; }
    juce::Rectangle<int> getFrameBounds() const;

    void paintButton (juce::Graphics& g, bool isHighlighted, bool isDown) override;

private:
    SkinImage image;
};
