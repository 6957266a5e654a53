#pragma once

#include "BaseGFXController.h"
#include "GUIController.h"

// A momentary button drawn from a film strip: frame 1 while held down with
// the pointer over it, frame 0 otherwise. A click fires the "onClick" event,
// or "onClickWithCtrl" with Ctrl held; `clickEvent` chooses press or release
// and `autorepeat` repeats the click while held. With the keyboard focus,
// Space and Return click it (Ctrl held fires the Ctrl event); a screen reader
// calls it by the name of the event it fires.
class GFXButton : public juce::Button,
                  public GUIController,
                  public BaseGFXController
{
public:
    explicit GFXButton (const juce::String& name);

    juce::Component& getComponent() override { return *this; }

    void assignAction (const juce::String& type, int eventId, const juce::String& eventName) override;

    // The strip frame for the button's current look.
    int frameToShow (bool isOver, bool isDown) const;

    bool keyPressed (const juce::KeyPress& key) override;

    static constexpr int repeatDelayMs = 1000;
    static constexpr int repeatIntervalMs = 100;

protected:
    void loadOwnAttributes (const juce::XmlElement& element) override;
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override { repaint(); }

    void paintButton (juce::Graphics& g, bool isOver, bool isDown) override;
    void clicked (const juce::ModifierKeys& modifiers) override;

    // `clickEvent`, `radioGroupId` and `style`, shared by the button kinds.
    void loadClickAttributes (const juce::XmlElement& element);

    // The state a button with states shows (-1 for a momentary button): one
    // strip frame per state, or two with a "3D" style (released, pressed).
    virtual int getShownState() const { return -1; }

    int clickEvent = noEvent;
    int ctrlClickEvent = noEvent;

private:
    bool threeD = false;
};
