#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

// The amber ring drawn around whichever control inside a window has the
// keyboard focus. It is a child of the window's content and measured in its
// units, so it scales with the zoom like the art, and it sits in the margin
// just outside the control so it never covers the control's own picture.
// A mouse click on a control that takes no focus hands the focus back to the
// content, which hides the ring until the keyboard is used again.
class FocusRing : public juce::Component,
                  private juce::FocusChangeListener,
                  private juce::ComponentListener
{
public:
    explicit FocusRing (juce::Component& content);
    ~FocusRing() override;

    void paint (juce::Graphics& g) override;

    // A wider corner would curve in over the control's own corner pixels.
    static constexpr float thickness = 1.5f, cornerRadius = 2.0f;
    static constexpr int margin = 2;
    static const juce::Colour colour;

private:
    void globalFocusChanged (juce::Component* focused) override;
    void componentMovedOrResized (juce::Component&, bool, bool) override { follow(); }
    void componentVisibilityChanged (juce::Component&) override { follow(); }

    // Heard for every click inside the content.
    void mouseDown (const juce::MouseEvent& event) override;

    void setTarget (juce::Component* newTarget);
    void follow();

    juce::Component& content;
    juce::Component::SafePointer<juce::Component> target;
};
