#include "BlinkingComponent.h"

BlinkingComponent::~BlinkingComponent()
{
    stopTimer();
}

void BlinkingComponent::blink (int durationMs)
{
    if (flashing)
        return;

    setLit (true);
    startTimer (juce::jmax (1, durationMs));
}

void BlinkingComponent::setBlinking (bool shouldBlink, int halfPeriodMs)
{
    if (shouldBlink == flashing)
        return;

    flashing = shouldBlink;

    if (flashing)
    {
        setLit (true);
        startTimer (juce::jmax (1, halfPeriodMs));
    }
    else
    {
        stopTimer();
        setLit (false);
    }
}

void BlinkingComponent::timerCallback()
{
    if (flashing)
    {
        setLit (! lit);
        return;
    }

    stopTimer();
    setLit (false);
}

void BlinkingComponent::setLit (bool shouldBeLit)
{
    if (lit == shouldBeLit)
        return;

    lit = shouldBeLit;
    blinkStateChanged();
}
