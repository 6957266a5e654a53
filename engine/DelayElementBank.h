#pragma once

#include "engine/DelayElement.h"
#include "engine/DelayKernels.h"

#include <array>

// Runs a set of delay elements as modulated allpasses, one block at a time.
//
// The read positions of every element are planned for the whole block before
// any audio is processed: they do not depend on the signal, and the glides and
// the LFO have closed forms that give every sample of a block independently.
// Where an element's reads cannot see the samples written during the block
// (its delay is at least a block long), the interpolated reads are made up
// front too, and the allpass itself becomes a short loop without dependencies
// between samples.
class DelayElementBank
{
public:
    static constexpr int blockSize = DelayKernels::blockSize;
    static constexpr int maxLanes = 32;

    explicit DelayElementBank (const DelayKernels& kernels = DelayKernels::best()) noexcept;

    // Adds an element (not owned; at most maxLanes) and returns its lane.
    int add (DelayElement& element) noexcept;

    // Plans the next block of every lane.
    void beginBlock (unsigned quality) noexcept;

    // Runs one lane's allpass over its block, in place. Every lane must be
    // processed exactly once between two calls of beginBlock.
    void process (int lane, double* io) noexcept;

    // Processes the lanes first, first + step, ... (count of them) in turn
    // over io, as process would.
    void processChain (int first, int step, int count, double* io) noexcept;

private:
    const DelayKernels& kernels;
    std::array<DelayElement*, maxLanes> elements {};
    int laneCount = 0;
    unsigned quality = 0;

    // Where each lane whose reads are not made up front reads during the
    // block: the stored index of the newest sample of each read, and the
    // fraction.
    alignas (64) std::int32_t index[maxLanes][blockSize] {};
    alignas (64) double fraction[maxLanes][blockSize] {};
    alignas (64) double reads[maxLanes][blockSize] {};

    // The stages of the chain being processed.
    struct Chain
    {
        double* written[maxLanes] {};
        double gains[maxLanes] {};
    } chain;

    std::array<bool, maxLanes> readsReady {};
};
