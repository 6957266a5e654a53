#pragma once

#include "BaseGFXController.h"
#include "GUIController.h"

// A number drawn from a digit strip (frames 0..9 are the digits, an eleventh
// frame, when present, the minus sign): the bound parameter's value mapped
// onto `minValue`..`maxValue` and rounded, right-aligned in `digitsNum`
// cells (plus one for the sign when `sign` is "yes"). With `control` "yes"
// a vertical drag changes it, in whole steps unless `continous` is "yes".
class NumericDisplay : public juce::Component,
                       public GUIController,
                       public BaseGFXController
{
public:
    explicit NumericDisplay (const juce::String& name);

    juce::Component& getComponent() override { return *this; }

    int getShownNumber() const;

    // The strip frames shown, left to right; -1 for an empty cell.
    juce::Array<int> getCellFrames() const;

    void paint (juce::Graphics& g) override;
    void mouseDown (const juce::MouseEvent& event) override;
    void mouseDrag (const juce::MouseEvent& event) override;
    void mouseUp (const juce::MouseEvent& event) override;

    static constexpr int minusFrame = 10;
    static constexpr int pixelsPerStep = 4;

protected:
    void loadOwnAttributes (const juce::XmlElement& element) override;
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override { repaint(); }

private:
    int getNumCells() const noexcept { return digitsNum + (withSign ? 1 : 0); }

    int digitsNum = 1;
    int minValue = 0, maxValue = 127;
    bool controllable = false, continuous = false, withSign = false;
    float dragStartValue = 0.0f;
};
