#pragma once

#include "BaseGFXController.h"
#include "GUIController.h"

// A two-sided button: "less" on the left (bottom when `type` is "vertical"),
// "more" on the right (top). Strip frames: 0 at rest, 1 "less" held, 2 "more"
// held. Releasing over the pressed side fires its event (the Ctrl variant
// with Ctrl held).
class GFXRocker : public juce::Component,
                  public GUIController,
                  public BaseGFXController
{
public:
    explicit GFXRocker (const juce::String& name);

    juce::Component& getComponent() override { return *this; }

    void assignAction (const juce::String& type, int eventId, const juce::String& eventName) override;

    enum class Side { none, less, more };
    Side sideAt (juce::Point<int> position) const;
    int getShownFrame() const;

    void paint (juce::Graphics& g) override;
    void mouseDown (const juce::MouseEvent& event) override;
    void mouseUp (const juce::MouseEvent& event) override;

protected:
    void loadOwnAttributes (const juce::XmlElement& element) override;
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override {}

private:
    bool vertical = false;
    Side pressed = Side::none;
    int lessEvent = noEvent, moreEvent = noEvent, lessCtrlEvent = noEvent, moreCtrlEvent = noEvent;
};
