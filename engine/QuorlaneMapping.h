#pragma once

#include <array>
#include <cmath>
#include <cstdint>

// How the reverb's normalised parameter values (0..1) become engine quantities.
// The core and the parameter texts both use these, so a display always shows
// exactly what the engine runs with.
namespace QuorlaneMapping
{
enum Index : std::uint32_t
{
    earlySize,
    earlyDiffusion,
    earlyAttenuation,
    earlyEqFrequency,
    earlyEqGain,
    earlyEqBandwidth,
    lateSize,
    lateDiffusion,
    lateFeedback,
    lateAttenuation,
    lateBassCut,
    lateEqFrequency,
    lateEqGain,
    lateEqBandwidth,
    crossFade,
    modulation,
    predelay,
    wetGain,
    dryWet,
    outputVolume,
    parameterCount
};

inline constexpr std::array<double, parameterCount> defaultValues {
    0.5, 0.5, 1.0, 0.5, 0.5, 0.5,       // early
    0.5, 0.5, 0.5, 1.0, 0.0, 0.5, 0.5, 0.5, // late
    0.5, 0.2, 0.0, 0.0, 0.5, 0.5        // mixer
};

// MIDI note 0; every size is a pitch above it.
inline constexpr double referenceFrequency = 8.1757989156;

// Each element of a diffusion chain is this much shorter than the one before.
// It is near a semitone on purpose but not one: equal-tempered ratios would
// line the elements' resonances up.
inline constexpr double elementRatio = 0.9448743126826654;

inline constexpr int earlyChainLength = 14;
inline constexpr int lateChainLength = 16;

inline constexpr double twoPi = 6.283185307179586;
inline constexpr double metresPerSecond = 340.3;

// The exponential knob shape shared by the attenuation and bass-cut controls,
// evaluated in single precision.
inline double taperCurve (double p)
{
    return (double) (std::exp (4.3651347f * (float) p) * 0.0106747355f - 0.009674735f);
}

// 20 Hz at 0, about 1700 Hz at 0.5, about 16600 Hz at 1.
inline double attenuationFrequency (double p)
{
    return (double) ((float) taperCurve (p) * 20000.0f);
}

inline double bassCutFrequency (double p)       { return taperCurve (p) * 26550.0 - 26.5; }

// After a sample-rate change the bass cut is rebuilt from this slightly
// different curve until the knob next moves.
inline double preparedBassCutFrequency (double p) { return taperCurve (p) * 22000.0; }

// Coefficient of a one-pole smoothing filter with the given corner.
inline double onePoleCoefficient (double hz, double sampleRate)
{
    return std::exp (-twoPi * hz / sampleRate);
}

// 20 Hz at 0, 2000 Hz at 0.5, 22000 Hz at 1.
inline double eqFrequency (double p)  { return std::pow (p + 0.3486221196993444, 5.176527233678091) * 4677.805028741974; }
inline double eqGainDb (double p)     { return p * 48.0 - 24.0; }
inline double eqBandwidth (double p)  { return (1.0 - p) * 3.5 + 0.5; }

inline double earlySizeFrequency (double p) { return referenceFrequency * std::pow (2.0, (1.0 - p) * 30.0 / 12.0); }
inline double lateSemitones (double p)      { return (1.0 - p) * 40.0 - 10.0; }

inline double pitchFrequency (double semitones) { return referenceFrequency * std::pow (2.0, semitones / 12.0); }

// The two cross-coupled late delays sit a little below the late chain's pitch.
inline constexpr double leftCrossOffset = 8.234;
inline constexpr double rightCrossOffset = 7.123;

// Length, in the unit of `first`, of the element at `position` in a chain.
inline double chainLength (double first, int position)
{
    double length = first;

    for (int i = 0; i < position; ++i)
        length *= elementRatio;

    return length;
}

inline double earlyDiffusionCoefficient (double p) { return p * 0.25 + 0.45 + 1e-20; }
inline double lateDiffusionCoefficient (double p)  { return p * 0.25 + 0.5 + 1e-20; }
inline double feedbackGain (double p)              { return p * 0.99; }
inline double modulationDepth (double p)           { return p * 0.1; }
inline double predelaySeconds (double p)           { return std::pow (p, 1.74) * 0.3; }
inline double wetGainFactor (double p)             { return 1.0 + 3.0 * p; }
inline double volumeFactor (double p)              { return 4.0 * p * p; }
}
