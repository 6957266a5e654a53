#pragma once

#include <cstdint>

// The per-block inner loops of the delay elements, compiled once for the
// portable instruction set and, on x86-64, once more for AVX2 with fused
// multiply-adds; best() picks the fastest one the processor runs. The two
// round differently in the last bits, and agree with the per-sample
// definition of the elements to far below what can be heard.
struct DelayKernels
{
    static constexpr int blockSize = 32;
    static constexpr int maxLanes = 32;

    // Modulation and glide state of a set of modulated allpass elements, one
    // entry per lane.
    struct Lanes
    {
        alignas (64) double length[maxLanes];
        alignas (64) double targetLength[maxLanes];
        alignas (64) double depth[maxLanes];
        alignas (64) double targetDepth[maxLanes];
        alignas (64) double glide[maxLanes];
        alignas (64) double stage1[maxLanes];
        alignas (64) double stage2[maxLanes];
        alignas (64) double lfoTarget[maxLanes];
        alignas (64) double lfoCoefficient[maxLanes];
        alignas (64) double countdown[maxLanes];
        alignas (64) double writeBase[maxLanes]; // write index + capacity
        alignas (64) double capacity[maxLanes];
        alignas (64) std::int32_t wholeCapacity[maxLanes];
        alignas (64) std::int32_t wrapIndex[maxLanes]; // capacity + 31: the first position stored at - capacity
        std::uint32_t randomA[maxLanes];
        std::uint32_t randomB[maxLanes];
        bool settled[maxLanes]; // neither length nor depth is gliding
    };

    // Read positions of every lane for one block, lane by lane: where the
    // newest sample of each read is stored, and the fraction.
    struct Plan
    {
        alignas (64) std::int32_t index[maxLanes][blockSize];
        alignas (64) double fraction[maxLanes][blockSize];
    };

    // Advances the first `lanes` lanes by one block and fills the plan.
    void (*plan) (Lanes&, Plan&, int lanes) noexcept;

    // Interpolated reads: for n < count, out[n] is the read at index[n] +
    // fraction[n] in the quality's variant.
    void (*interpolate) (const double* buffer, const std::int32_t* index, const double* fraction,
                         double* out, int count, unsigned quality) noexcept;

    // The allpass update of `count` samples in place over io, given their
    // reads; the values for the element's buffer go to `written`.
    void (*allpass) (const double* reads, double g, double* io, double* written, int count) noexcept;

    static const DelayKernels& portable();
    static const DelayKernels& best();
};
