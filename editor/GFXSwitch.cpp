#include "GFXSwitch.h"

void GFXSwitch::loadOwnAttributes (const juce::XmlElement& element)
{
    const auto style = element.getStringAttribute ("style");

    if (style == "Rotary")          setSliderStyle (RotaryVerticalDrag);
    else if (style == "Horizontal") setSliderStyle (LinearHorizontal);
    else if (style == "Vertical")   setSliderStyle (LinearVertical);
}

void GFXSwitch::frameSizeChanged()
{
    const int frames = getNumFrames();
    setRange (0.0, 1.0, frames > 1 ? 1.0 / (frames - 1) : 0.0);
}
