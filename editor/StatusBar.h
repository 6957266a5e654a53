#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

// A line of text over the bottom of the skin: a message for a given time, or
// else a resting text (the MIDI learn state while learning). Hidden while it
// has nothing to say.
class StatusBar : public juce::Component,
                  private juce::Timer
{
public:
    StatusBar();

    void showMessage (const juce::String& text, int durationMs);
    void setRestingText (const juce::String& text);

    juce::String getShownText() const { return message.isNotEmpty() ? message : restingText; }
    const juce::String& getRestingText() const noexcept { return restingText; }

    void paint (juce::Graphics& g) override;

    static constexpr int height = 18;

private:
    // It repeats what the controls themselves tell a screen reader.
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override
    {
        return createIgnoredAccessibilityHandler (*this);
    }

    void timerCallback() override;
    void update();

    juce::String message, restingText;
};
