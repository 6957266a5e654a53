#include "StatusBar.h"

StatusBar::StatusBar()
{
    setInterceptsMouseClicks (false, false);
    setVisible (false);
}

void StatusBar::showMessage (const juce::String& text, int durationMs)
{
    message = text;
    startTimer (durationMs);
    update();
}

void StatusBar::setRestingText (const juce::String& text)
{
    restingText = text;
    update();
}

void StatusBar::timerCallback()
{
    stopTimer();
    message.clear();
    update();
}

void StatusBar::update()
{
    setVisible (getShownText().isNotEmpty());
    repaint();
}

void StatusBar::paint (juce::Graphics& g)
{
    g.fillAll (juce::Colour (0xd0141518));
    g.setColour (juce::Colour (0xffbef6ff));
    g.setFont (juce::Font (13.0f));
    g.drawText (getShownText(), getLocalBounds().reduced (6, 0), juce::Justification::centredLeft, true);
}
