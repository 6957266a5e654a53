#include "Clock.h"

#include <cmath>

void Clock::setSampleRate (double newRate) noexcept
{
    if (newRate != sampleRate)
    {
        sampleRate = newRate;
        changed = true;
    }
}

void Clock::setTempo (double bpm) noexcept
{
    if (bpm != tempo)
    {
        tempo = bpm;
        changed = true;
    }
}

void Clock::setPosition (double quarters) noexcept
{
    if (quarters != position)
    {
        position = quarters;
        changed = true;
    }
}

void Clock::start (double quarters) noexcept
{
    position = quarters;
    running = true;
    changed = true;
}

void Clock::stop() noexcept
{
    running = false;
    changed = true;
}

bool Clock::advance() noexcept
{
    lastTickForCore = false;

    if (! running || sampleRate <= 0.0 || tempo <= 0.0)
        return false;

    const double before = position;
    position += tempo / (60.0 * sampleRate);
    changed = false;

    // A tick falls on this sample when a whole beat lies in (before, position].
    if (std::floor (position) > std::floor (before))
    {
        lastTickForCore = true;
        return true;
    }

    return false;
}
