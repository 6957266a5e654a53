#pragma once

#include "engine/DelayElement.h"
#include "engine/DelayKernels.h"

#include <array>

// Runs a set of delay elements as modulated allpasses, one block at a time.
//
// The glides and LFOs of all elements are stepped together, several lanes at
// a time, before any audio is processed: their read positions do not depend on
// the signal, and stepping many elements side by side turns a long chain of
// dependent arithmetic into wide independent work. Where an element's reads
// cannot see the samples written during the block (its delay is at least a
// block long), the interpolated reads are made up front too, and the allpass
// itself becomes a short loop without dependencies between samples.
class DelayElementBank
{
public:
    static constexpr int blockSize = DelayKernels::blockSize;
    static constexpr int maxLanes = DelayKernels::maxLanes;

    explicit DelayElementBank (const DelayKernels& kernels = DelayKernels::best()) noexcept;

    // Adds an element (not owned; at most maxLanes) and returns its lane.
    int add (DelayElement& element) noexcept;

    // Plans the next block of every lane.
    void beginBlock (unsigned quality) noexcept;

    // Runs one lane's allpass over its block, in place. Every lane must be
    // processed exactly once between two calls of beginBlock.
    void process (int lane, double* io) noexcept;

private:
    void loadLanes() noexcept;
    void storeLanes() noexcept;

    const DelayKernels& kernels;
    std::array<DelayElement*, maxLanes> elements {};
    int laneCount = 0;
    unsigned quality = 0;

    DelayKernels::Lanes lanes {};
    DelayKernels::Plan plan {};
    alignas (64) double reads[maxLanes][blockSize] {};
    std::array<bool, maxLanes> readsReady {};
};
