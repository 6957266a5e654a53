#pragma once

#include "engine/BiquadTuning.h"

// A single-channel peaking equaliser over blocks of 32 samples.
class BiquadFilter
{
public:
    static constexpr int blockSize = 32;

    explicit BiquadFilter (double frequency = 1000.0, double gainDb = 0.0, double bandwidthOctaves = 1.0) noexcept
        : tuning (frequency, gainDb, bandwidthOctaves) {}

    BiquadTuning& getTuning() noexcept { return tuning; }

    // Forgets the signal; the tuning stays.
    void clear() noexcept { state1 = state2 = 0.0; }

    void process (double* io) noexcept;

private:
    BiquadTuning tuning;
    double state1 = 0.0, state2 = 0.0;
};
