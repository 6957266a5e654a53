#include "GFXSlider.h"

GFXSlider::GFXSlider (const juce::String& name)
    : juce::Slider (name)
{
    setSliderStyle (RotaryVerticalDrag);
    setTextBoxStyle (NoTextBox, true, 0, 0);
    setRange (0.0, 1.0, 0.0);
    setValue (0.0, juce::dontSendNotification);
}

int GFXSlider::getShownFrame() const
{
    return frameFor ((getValue() - getMinimum()) / (getMaximum() - getMinimum()));
}

void GFXSlider::paint (juce::Graphics& g)
{
    if (hasStrip())
        drawFrame (g, getShownFrame());
    else
        drawFallback (g, (float) valueToProportionOfLength (getValue()));
}

void GFXSlider::loadGeometry (const juce::XmlElement& element)
{
    setBounds (loadStripGeometry (element));
}

void GFXSlider::showParameterValue()
{
    if (auto* p = getParameter())
        setValue (p->getNormalisedValue(), juce::dontSendNotification);
}

// Only the user's changes arrive here: the parameter's are set without notification.
void GFXSlider::valueChanged()
{
    setParameterFromUser ((float) getValue());
}

void GFXSlider::startedDragging()
{
    beginUserGesture();
}

void GFXSlider::stoppedDragging()
{
    endUserGesture();
}
