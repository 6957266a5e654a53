#pragma once

#include "BaseGFXController.h"
#include "GUIController.h"

// Up to four characters drawn from a glyph strip (frames: "0"-"9", "A"-"Z",
// "#", "-"), showing the bound parameter's integer value by the pattern whose
// range holds it: a note name ("C#3", middle C = 60 is "C3"), a plain number,
// or a bank letter and slot ("B12", `slotMax` slots per bank). The cells sit
// at `firstDigit`..`fourthDigit` pixels from the left.
class PatternNumberDisplay : public juce::Component,
                             public GUIController,
                             public BaseGFXController
{
public:
    explicit PatternNumberDisplay (const juce::String& name);

    juce::Component& getComponent() override { return *this; }

    // The characters for a value; "" when no pattern's range holds it.
    juce::String textFor (int value) const;

    // The strip frame of a character, -1 when the strip has none.
    static int frameOf (juce::juce_wchar character);

    void paint (juce::Graphics& g) override;

protected:
    void loadOwnAttributes (const juce::XmlElement& element) override;
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override { repaint(); }

    struct Range
    {
        int min = 0, max = -1;
        bool contains (int v) const noexcept { return v >= min && v <= max; }
    };

    Range notePattern, numericPattern, bankAndSlotPattern;

private:
    static Range readRange (const juce::XmlElement& element, const juce::String& prefix);

    int slotMax = 16;
    std::array<int, 4> cellX {};
};
