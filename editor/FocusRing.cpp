#include "FocusRing.h"

// The amber of the skin's section titles and lights.
const juce::Colour FocusRing::colour { 0xffffae3d };

FocusRing::FocusRing (juce::Component& c)
    : content (c)
{
    setInterceptsMouseClicks (false, false);
    setAccessible (false);
    setWantsKeyboardFocus (false);
    content.addChildComponent (this);
    content.addMouseListener (this, true);
    juce::Desktop::getInstance().addFocusChangeListener (this);
}

FocusRing::~FocusRing()
{
    juce::Desktop::getInstance().removeFocusChangeListener (this);
    content.removeMouseListener (this);
    setTarget (nullptr);
}

void FocusRing::globalFocusChanged (juce::Component* focused)
{
    const bool inside = focused != nullptr && focused != &content && content.isParentOf (focused);
    setTarget (inside ? focused : nullptr);
}

// Controls that take no focus from a click (the skin's) would otherwise
// leave the ring on a control the user has since moved away from.
void FocusRing::mouseDown (const juce::MouseEvent& event)
{
    auto* focused = juce::Component::getCurrentlyFocusedComponent();
    auto* clicked = event.eventComponent;

    if (focused != nullptr && focused != clicked && ! clicked->isParentOf (focused) && content.isParentOf (focused)
        && content.getWantsKeyboardFocus())
        content.grabKeyboardFocus();
}

void FocusRing::setTarget (juce::Component* newTarget)
{
    if (newTarget != target.getComponent())
    {
        if (auto* old = target.getComponent())
            old->removeComponentListener (this);

        target = newTarget;

        if (newTarget != nullptr)
            newTarget->addComponentListener (this);
    }

    follow();
}

void FocusRing::follow()
{
    auto* focused = target.getComponent();

    if (focused == nullptr || ! focused->isShowing())
    {
        setVisible (false);
        return;
    }

    setBounds (content.getLocalArea (focused, focused->getLocalBounds()).expanded (margin));
    setVisible (true);
    toFront (false);
    repaint();
}

void FocusRing::paint (juce::Graphics& g)
{
    g.setColour (colour);
    g.drawRoundedRectangle (getLocalBounds().toFloat().reduced (thickness / 2.0f), cornerRadius, thickness);
}
