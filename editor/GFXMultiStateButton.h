#pragma once

#include "GFXButton.h"

// A button stepping through `states` states (one strip frame each, two with
// "3D"), wrapping after the last; a bound parameter holds state / (states - 1).
class GFXMultiStateButton : public GFXButton
{
public:
    explicit GFXMultiStateButton (const juce::String& name) : GFXButton (name) {}

    int getState() const noexcept { return state; }
    int getNumStates() const noexcept { return numStates > 0 ? numStates : getNumFrames(); }

protected:
    int getShownState() const override { return state; }
    void loadOwnAttributes (const juce::XmlElement& element) override;
    void showParameterValue() override;
    void clicked (const juce::ModifierKeys& modifiers) override;

private:
    int numStates = 0; // 0: one state per frame
    int state = 0;
};
