#pragma once

#include <juce_events/juce_events.h>

// Something on screen that can light up for a moment (an activity light) or
// flash until told to stop (a button while its mode is on). Controls mix it
// in and redraw when the lit state flips.
class BlinkingComponent : private juce::Timer
{
public:
    ~BlinkingComponent() override;

    // Lit now, unlit after the given time.
    void blink (int durationMs);

    // Flashes with the given half-period until stopped; stopping leaves it unlit.
    void setBlinking (bool shouldBlink, int halfPeriodMs = 250);

    bool isBlinkLit() const noexcept { return lit; }

protected:
    virtual void blinkStateChanged() = 0;

private:
    void timerCallback() override;
    void setLit (bool shouldBeLit);

    bool lit = false;
    bool flashing = false;
};
