#include "GFXButton.h"

#include "SkinValues.h"

GFXButton::GFXButton (const juce::String& name)
    : juce::Button (name)
{
    // Tab reaches it; a click does not take the keyboard from the host.
    setMouseClickGrabsKeyboardFocus (false);
}

void GFXButton::assignAction (const juce::String& type, int eventId, const juce::String& eventName)
{
    if (type == "onClick")
    {
        clickEvent = eventId;
        setTitle (eventName);
    }
    else if (type == "onClickWithCtrl")
    {
        ctrlClickEvent = eventId;
        setTooltip ("With Ctrl: " + eventName);
    }
}

void GFXButton::loadClickAttributes (const juce::XmlElement& element)
{
    setTriggeredOnMouseDown (element.getStringAttribute ("clickEvent") == "onPress");
    threeD = element.getStringAttribute ("style") == "3D";

    if (element.hasAttribute ("radioGroupId"))
        setRadioGroupId (SkinValues::readInt (element, "radioGroupId"));
}

void GFXButton::loadOwnAttributes (const juce::XmlElement& element)
{
    loadClickAttributes (element);

    const auto autorepeat = element.getStringAttribute ("autorepeat", "no");

    if (autorepeat == "yes")
        setRepeatSpeed (repeatDelayMs, repeatIntervalMs, -1);
    else if (autorepeat == "no")
        setRepeatSpeed (0, 0, -1);
}

void GFXButton::loadGeometry (const juce::XmlElement& element)
{
    setBounds (loadStripGeometry (element));
}

int GFXButton::frameToShow (bool isOver, bool isDown) const
{
    const bool pressed = isOver && isDown;
    const int state = getShownState();
    int frame = pressed || isBlinkLit() ? 1 : 0;

    if (state >= 0)
        frame = threeD ? state * 2 + (pressed ? 1 : 0) : state;

    return juce::jlimit (0, juce::jmax (0, getNumFrames() - 1), frame);
}

void GFXButton::paintButton (juce::Graphics& g, bool isOver, bool isDown)
{
    if (hasStrip())
        drawFrame (g, frameToShow (isOver, isDown));
    else
        drawFallback (g, isOver && isDown ? 1.0f : 0.0f);
}

// The click happens at once, with the modifiers of the key itself.
bool GFXButton::keyPressed (const juce::KeyPress& key)
{
    const auto mods = key.getModifiers();

    if (isEnabled() && (key.getKeyCode() == juce::KeyPress::spaceKey || key.getKeyCode() == juce::KeyPress::returnKey)
        && ! mods.isAltDown())
    {
        internalClickCallback (mods);
        return true;
    }

    return juce::Button::keyPressed (key);
}

void GFXButton::clicked (const juce::ModifierKeys& modifiers)
{
    fireEvent (modifiers.isCtrlDown() ? ctrlClickEvent : clickEvent);
}
