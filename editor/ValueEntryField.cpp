#include "ValueEntryField.h"

#include "OptionsPanel.h"

ValueEntryField::ValueEntryField()
{
    setMultiLine (false);
    setJustification (juce::Justification::centred);
    setIndents (2, 1);
    setFont (OptionsPanel::getFont (12.0f));
    setColour (backgroundColourId, juce::Colour (0xff232224));
    setColour (textColourId, juce::Colour (0xffbef6ff));
    setColour (juce::CaretComponent::caretColourId, juce::Colour (0xffbef6ff));
    setColour (highlightColourId, juce::Colours::white.withAlpha (0.25f));
    setColour (outlineColourId, juce::Colour (0xff4d443d));
    setColour (focusedOutlineColourId, juce::Colour (0xff4d443d));
    setDescription ("Type a value and press Return");

    onReturnKey = [this]
    {
        const auto entered = getText();
        close (true);

        if (onEntered != nullptr)
            onEntered (entered);
    };
    onEscapeKey = [this] { close (true); };
    onFocusLost = [this] { close (false); };
}

void ValueEntryField::open (juce::Component& target, const juce::String& text, bool selectWholeText)
{
    auto* parent = target.getParentComponent();

    if (parent == nullptr)
        return;

    control = &target;

    if (getParentComponent() != parent)
        parent->addChildComponent (this);

    const auto centre = target.getBounds().getCentre();
    setBounds (juce::Rectangle<int> (width, height).withCentre (centre).constrainedWithin (parent->getLocalBounds()));
    setTitle (target.getTitle());
    setText (text, false);
    setVisible (true);
    toFront (true);

    if (selectWholeText)
        selectAll();
    else
        moveCaretToEnd();
}

void ValueEntryField::close (bool refocusControl)
{
    if (! isVisible())
        return;

    setVisible (false);

    if (refocusControl && control != nullptr)
        control->grabKeyboardFocus();
}
