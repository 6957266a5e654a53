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

    // Glide and LFO state of one delay element.
    struct Motion
    {
        double length = 10.0, targetLength = 10.0;
        double depth = 0.0, targetDepth = 0.0;
        double glide = 0.0001;
        double lfoCoefficient = 0.0;
        double lfoTarget = 0.5, lfoStage1 = 0.5, lfoStage2 = 0.5;
        double lfoCountdown = 0.0;
        std::uint32_t randomA = 0, randomB = 0;

        // A glide stops changing its value once it has reached its fixed
        // point; from then on it is skipped until a new target is set.
        bool lengthSettled = false, depthSettled = false;
    };

    // Advances an element's motion by one block and plans its reads there:
    // for each sample, where the newest sample of the read is stored and the
    // fraction. The element holds `capacity` samples and writes the block at
    // writeIndex.
    void (*plan) (Motion&, std::uint32_t writeIndex, int capacity, std::int32_t* index, double* fraction) noexcept;

    // The same plan, with the block's reads made at once from the element's
    // buffer: out[n] is the read of sample n. One function for each quality
    // (any above 3 reads as 3).
    using PlanAndRead = void (*) (Motion&, std::uint32_t writeIndex, int capacity, const double* buffer,
                                  double* out, unsigned quality) noexcept;
    PlanAndRead planAndReadFor[4];

    void planAndRead (Motion& m, std::uint32_t writeIndex, int capacity, const double* buffer,
                      double* out, unsigned quality) const noexcept
    {
        planAndReadFor[quality < 3 ? quality : 3] (m, writeIndex, capacity, buffer, out, quality);
    }

    // Interpolated reads: for n < count, out[n] is the read at index[n] +
    // fraction[n] in the quality's variant.
    void (*interpolate) (const double* buffer, const std::int32_t* index, const double* fraction,
                         double* out, int count, unsigned quality) noexcept;

    // The allpass update of `count` samples in place over io, given their
    // reads; the values for the element's buffer go to `written`.
    void (*allpass) (const double* reads, double g, double* io, double* written, int count) noexcept;

    // A chain of `stages` allpass updates of a whole block in place over io,
    // stage s with the block of reads at reads + s * readStride, coefficient
    // gains[s], and its element's values going to written[s]: the same as
    // one allpass call per stage in turn.
    void (*allpassChain) (const double* reads, int readStride, const double* gains, double* io, double* const* written,
                          int stages) noexcept;

    static const DelayKernels& portable();
    static const DelayKernels& best();
};
