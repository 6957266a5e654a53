#include "GFXAnimation.h"

GFXAnimation::GFXAnimation (const juce::String& name)
    : juce::Component (name)
{
    setInterceptsMouseClicks (false, false);
}

bool GFXAnimation::setValue (float value)
{
    const int newFrame = frameFor (juce::jlimit (0.0f, 1.0f, value));

    if (newFrame == frame)
        return false;

    frame = newFrame;
    repaint();
    return true;
}

void GFXAnimation::paint (juce::Graphics& g)
{
    if (hasStrip())
        drawFrame (g, frame);
    else
        drawFallback (g, getNumFrames() > 1 ? (float) frame / (float) (getNumFrames() - 1) : 0.0f);
}

void GFXAnimation::loadGeometry (const juce::XmlElement& element)
{
    setBounds (loadStripGeometry (element));
}

void GFXAnimation::showParameterValue()
{
    if (auto* p = getParameter())
        setValue (p->getNormalisedValue());
}
