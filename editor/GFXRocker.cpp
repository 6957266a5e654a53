#include "GFXRocker.h"

GFXRocker::GFXRocker (const juce::String& name)
    : juce::Component (name)
{
}

void GFXRocker::assignAction (const juce::String& type, int eventId, const juce::String&)
{
    if (type == "onLessClick")              lessEvent = eventId;
    else if (type == "onMoreClick")         moreEvent = eventId;
    else if (type == "onLessClickWithCtrl") lessCtrlEvent = eventId;
    else if (type == "onMoreClickWithCtrl") moreCtrlEvent = eventId;
}

void GFXRocker::loadOwnAttributes (const juce::XmlElement& element)
{
    vertical = element.getStringAttribute ("type") == "vertical";
}

void GFXRocker::loadGeometry (const juce::XmlElement& element)
{
    setBounds (loadStripGeometry (element));
}

GFXRocker::Side GFXRocker::sideAt (juce::Point<int> position) const
{
    if (! getLocalBounds().contains (position))
        return Side::none;

    if (vertical)
        return position.y < getHeight() / 2 ? Side::more : Side::less;

    return position.x < getWidth() / 2 ? Side::less : Side::more;
}

int GFXRocker::getShownFrame() const
{
    const int frame = pressed == Side::less ? 1 : pressed == Side::more ? 2 : 0;
    return juce::jmin (frame, getNumFrames() - 1);
}

void GFXRocker::paint (juce::Graphics& g)
{
    if (hasStrip())
        drawFrame (g, getShownFrame());
    else
        drawFallback (g, pressed == Side::more ? 1.0f : 0.0f);
}

void GFXRocker::mouseDown (const juce::MouseEvent& event)
{
    pressed = sideAt (event.getPosition());
    repaint();
}

void GFXRocker::mouseUp (const juce::MouseEvent& event)
{
    const auto side = pressed;
    pressed = Side::none;
    repaint();

    if (side == Side::none || sideAt (event.getPosition()) != side)
        return;

    const bool ctrl = event.mods.isCtrlDown();

    if (side == Side::less)
        fireEvent (ctrl ? lessCtrlEvent : lessEvent);
    else
        fireEvent (ctrl ? moreCtrlEvent : moreEvent);
}
