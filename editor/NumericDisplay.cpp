#include "NumericDisplay.h"

#include "SkinValues.h"

NumericDisplay::NumericDisplay (const juce::String& name)
    : juce::Component (name)
{
}

void NumericDisplay::loadOwnAttributes (const juce::XmlElement& element)
{
    digitsNum = juce::jlimit (1, 10, SkinValues::readInt (element, "digitsNum", 1));
    minValue = SkinValues::readInt (element, "minValue", 0);
    maxValue = SkinValues::readInt (element, "maxValue", 127);
    controllable = SkinValues::readYesNo (element, "control", false);
    continuous = SkinValues::readYesNo (element, "continous", false);
    withSign = SkinValues::readYesNo (element, "sign", false);
    setInterceptsMouseClicks (controllable, false);
}

void NumericDisplay::loadGeometry (const juce::XmlElement& element)
{
    auto bounds = loadStripGeometry (element);

    if (hasStrip())
        bounds.setWidth (getFrameWidth() * getNumCells());

    setBounds (bounds);
}

int NumericDisplay::getShownNumber() const
{
    const auto* p = getParameter();
    const float proportion = p != nullptr ? p->getNormalisedValue() : 0.0f;
    return juce::roundToInt ((float) minValue + proportion * (float) (maxValue - minValue));
}

juce::Array<int> NumericDisplay::getCellFrames() const
{
    const int number = getShownNumber();
    const auto digits = juce::String (std::abs (number)).getLastCharacters (digitsNum);

    juce::Array<int> frames;
    frames.insertMultiple (0, -1, getNumCells());

    for (int i = 0; i < digits.length(); ++i)
        frames.set (getNumCells() - digits.length() + i, digits[i] - '0');

    if (withSign && number < 0)
        frames.set (0, minusFrame);

    return frames;
}

void NumericDisplay::paint (juce::Graphics& g)
{
    if (! hasStrip())
    {
        drawFallback (g, 0.0f);
        return;
    }

    const auto frames = getCellFrames();

    for (int i = 0; i < frames.size(); ++i)
    {
        if (frames[i] < 0 || frames[i] >= getNumFrames())
            continue;

        juce::Graphics::ScopedSaveState state (g);
        g.setOrigin (i * getFrameWidth(), 0);
        drawFrame (g, frames[i]);
    }
}

void NumericDisplay::mouseDown (const juce::MouseEvent&)
{
    if (auto* p = getParameter())
    {
        dragStartValue = p->getNormalisedValue();
        beginUserGesture();
    }
}

void NumericDisplay::mouseDrag (const juce::MouseEvent& event)
{
    const int range = juce::jmax (1, maxValue - minValue);
    const float steps = (float) -event.getDistanceFromDragStartY() / (float) pixelsPerStep;
    float value = dragStartValue + (continuous ? steps / 100.0f : std::round (steps) / (float) range);

    if (! continuous)
        value = std::round (value * (float) range) / (float) range;

    setParameterFromUser (juce::jlimit (0.0f, 1.0f, value));
    repaint();
}

void NumericDisplay::mouseUp (const juce::MouseEvent&)
{
    endUserGesture();
}
