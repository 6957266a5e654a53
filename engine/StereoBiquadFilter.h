#pragma once

#include "engine/BiquadTuning.h"

// A two-channel peaking equaliser over blocks of 32 samples; both channels
// share one tuning and are filtered side by side.
class StereoBiquadFilter
{
public:
    static constexpr int blockSize = 32;

    explicit StereoBiquadFilter (double frequency = 1000.0, double gainDb = 0.0, double bandwidthOctaves = 1.0) noexcept
        : tuning (frequency, gainDb, bandwidthOctaves) {}

    BiquadTuning& getTuning() noexcept { return tuning; }

    // Forgets the signal; the tuning stays.
    void clear() noexcept { state1[0] = state1[1] = state2[0] = state2[1] = 0.0; }

    void process (double* left, double* right) noexcept;

private:
    BiquadTuning tuning;
    double state1[2] {}, state2[2] {};
};
