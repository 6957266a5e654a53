#pragma once

#include <optional>
#include <vector>

// Reverberation times of an impulse response from its energy decay curve
// (Schroeder's backward integration): straight-line fits over a range of the
// curve, extrapolated to a 60 dB decay. A time is absent when the curve does
// not fall through its whole range or falls too fast to fit.
struct DecayTimes
{
    std::optional<double> edt; // fitted over 0 .. -10 dB
    std::optional<double> t20; // -5 .. -25 dB
    std::optional<double> t30; // -5 .. -35 dB
};

// The energy still to come at each sample, in dB relative to the total;
// empty for a silent response. A response that stops before it has died
// away (cut off, or gated to silence) would bend the curve down at its end,
// so the energy it would still have carried is added back: its last 10 ms
// continued at the decay rate of the curve's -5 .. -25 dB range.
std::vector<double> energyDecayCurve (const float* samples, int numSamples, double sampleRate);

// The fits start at the response's onset (its first sample within 20 dB of
// the peak), so a predelay does not count as decay.
DecayTimes measureDecayTimes (const float* samples, int numSamples, double sampleRate);
