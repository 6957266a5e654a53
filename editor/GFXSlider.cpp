#include "GFXSlider.h"

#include "BasePluginEditor.h"
#include "ValueFromText.h"

#include <cmath>

namespace
{
    bool startsTypedValue (juce::juce_wchar c)
    {
        return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == ',';
    }
}

GFXSlider::GFXSlider (const juce::String& name)
    : juce::Slider (name)
{
    setSliderStyle (RotaryVerticalDrag);
    setTextBoxStyle (NoTextBox, true, 0, 0);
    setRange (0.0, 1.0, 0.0);
    setValue (0.0, juce::dontSendNotification);

    // Tab reaches it; a click does not take the keyboard from the host.
    setWantsKeyboardFocus (true);
    setMouseClickGrabsKeyboardFocus (false);

    entryField.onEntered = [this] (const juce::String& text) { moveFromKeyboard (getValueFromText (text)); };
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
    auto* p = getParameter();

    if (p == nullptr || p->getNormalisedValue() == (float) getValue())
        return;

    setValue (p->getNormalisedValue(), juce::dontSendNotification);

    if (auto* handler = getAccessibilityHandler())
        handler->notifyAccessibilityEvent (juce::AccessibilityEvent::valueChanged);
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

juce::String GFXSlider::getTextFromValue (double value)
{
    auto* p = getParameter();
    auto* editor = getEditor();

    if (p == nullptr || editor == nullptr)
        return juce::Slider::getTextFromValue (value);

    return editor->getPlugin().getParameterDisplayText ((int) p->getIndex(), (float) value);
}

double GFXSlider::getValueFromText (const juce::String& text)
{
    const auto found = ValueFromText::find ([this] (float v) { return getTextFromValue (v); }, text.replaceCharacter (',', '.'));
    return found ? (double) *found : getValue();
}

bool GFXSlider::keyPressed (const juce::KeyPress& key)
{
    const auto mods = key.getModifiers();

    if (mods.isCtrlDown() || mods.isAltDown() || mods.isCommandDown())
        return false;

    const double interval = getInterval();
    const double fine = interval > 0.0 ? interval : fineStep;
    const double coarse = interval > 0.0 ? interval * std::ceil (coarseStep / interval) : coarseStep;
    const double value = getValue();

    const std::pair<int, double> moves[] = { { juce::KeyPress::upKey, value + fine },
                                             { juce::KeyPress::rightKey, value + fine },
                                             { juce::KeyPress::downKey, value - fine },
                                             { juce::KeyPress::leftKey, value - fine },
                                             { juce::KeyPress::pageUpKey, value + coarse },
                                             { juce::KeyPress::pageDownKey, value - coarse },
                                             { juce::KeyPress::homeKey, getMinimum() },
                                             { juce::KeyPress::endKey, getMaximum() } };

    for (const auto& [code, target] : moves)
    {
        if (key.getKeyCode() == code)
        {
            moveFromKeyboard (target);
            return true;
        }
    }

    if (getParameter() == nullptr)
        return false;

    if (key.isKeyCode (juce::KeyPress::returnKey))
    {
        entryField.open (*this, getTextFromValue (value), true);
        return true;
    }

    if (startsTypedValue (key.getTextCharacter()))
    {
        entryField.open (*this, juce::String::charToString (key.getTextCharacter()), false);
        return true;
    }

    return false;
}

void GFXSlider::moveFromKeyboard (double newValue)
{
    newValue = juce::jlimit (getMinimum(), getMaximum(), newValue);

    if (newValue == getValue())
        return;

    const ScopedDragNotification gesture (*this);
    setValue (newValue, juce::sendNotificationSync);
}
