#pragma once

#include "BaseGFXController.h"
#include "GUIController.h"
#include "ValueEntryField.h"

// A slider drawn from a film strip, moving its parameter (0..1) and following
// it; the base of the knob and the switch. A drag is reported to the host as
// one automation gesture, and so is every change made from the keyboard:
// the arrow keys move a fine step, Page Up and Page Down a coarse one, Home
// and End go to the ends, and typing a number (or Return) opens a field for
// the value in the parameter's own units. Screen readers read and set the
// value as the plug-in's text for it.
class GFXSlider : public juce::Slider,
                  public GUIController,
                  public BaseGFXController
{
public:
    explicit GFXSlider (const juce::String& name);

    juce::Component& getComponent() override { return *this; }

    // The strip frame the current value shows.
    int getShownFrame() const;

    void paint (juce::Graphics& g) override;
    bool keyPressed (const juce::KeyPress& key) override;

    juce::String getTextFromValue (double value) override;
    double getValueFromText (const juce::String& text) override;

    ValueEntryField& getEntryField() noexcept { return entryField; }

    static constexpr double fineStep = 0.01, coarseStep = 0.1;

protected:
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override;

    void valueChanged() override;
    void startedDragging() override;
    void stoppedDragging() override;

private:
    // One gesture for the host, as a drag would be.
    void moveFromKeyboard (double newValue);

    ValueEntryField entryField;
};
