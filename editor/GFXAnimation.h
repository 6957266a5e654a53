#pragma once

#include "BaseGFXController.h"
#include "GUIController.h"

// A film strip driven by a value 0..1 (a VU meter, for instance); the user
// cannot move it, and screen readers pass over it.
class GFXAnimation : public juce::Component,
                     public GUIController,
                     public BaseGFXController
{
public:
    explicit GFXAnimation (const juce::String& name);

    juce::Component& getComponent() override { return *this; }

    // Clamps to 0..1; returns true when the shown frame changed (and only
    // then repaints).
    bool setValue (float value);
    int getFrame() const noexcept { return frame; }

    void paint (juce::Graphics& g) override;

protected:
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override;

private:
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override
    {
        return createIgnoredAccessibilityHandler (*this);
    }

    int frame = 0;
};
