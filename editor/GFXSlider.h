#pragma once

#include "BaseGFXController.h"
#include "GUIController.h"

// A slider drawn from a film strip, moving its parameter (0..1) and following
// it; the base of the knob and the switch. A drag is reported to the host as
// one automation gesture.
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

protected:
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override;

    void valueChanged() override;
    void startedDragging() override;
    void stoppedDragging() override;
};
