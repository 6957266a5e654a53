#pragma once

#include "engine/DelayKernels.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

class DelayElementBank;

// One delay line of the reverb network, used either as a plain delay whose
// length glides to a new target (process with separate input and output) or
// as a randomly modulated allpass (run through a DelayElementBank).
//
// Read positions are counted in a mirrored buffer of twice the capacity, in
// which every sample sits at w and at w + capacity, so that a read of up to 32
// consecutive older samples never has to wrap. Only the start of the mirror is
// stored: the first 32 samples are repeated after the end of a single copy,
// which is all a read can reach, and which halves the memory and the writes.
class DelayElement
{
public:
    // Each random number seeds one of the two states of the LFO's sequence.
    // An element never asked for more than longestSeconds of delay
    // (modulation included) keeps a buffer of just that and the reads'
    // margin, which keeps the network's memory within the processor's caches.
    DelayElement (std::uint32_t randomA, std::uint32_t randomB, double longestSeconds = 1.0);

    // Sizes the buffer for one second (at least 44100 samples), or for the
    // longest delay where that is shorter, and clears it.
    void prepare (double sampleRate);

    // Silences the buffer; lengths, modulation and coefficients stay.
    void clear() noexcept;

    // Sets the target length; the current length glides towards it.
    void setLength (double samples) noexcept;

    // Sets length, depth and allpass coefficient at once, without gliding.
    void init (double samples, double depth, double coefficient) noexcept;

    void setDepth (double depth) noexcept;
    void setCoefficient (double g) noexcept { coefficient = g; }

    // Plain delay over one block; input and output may be the same buffer.
    // A plain delay is never modulated: this clears any depth set.
    void process (const double* input, double* output, unsigned quality,
                  const DelayKernels& kernels = DelayKernels::best()) noexcept;

    int getCapacity() const noexcept       { return capacity; }
    double getTargetLength() const noexcept { return motion.targetLength; }
    double getTargetDepth() const noexcept  { return motion.targetDepth; }
    double getCoefficient() const noexcept  { return coefficient; }

private:
    friend class DelayElementBank;

    struct FreeDeleter
    {
        void operator() (double* p) const noexcept { std::free (p); }
    };

    static constexpr int blockSize = DelayKernels::blockSize;
    static constexpr int guard = blockSize;

    void allocate (int newCapacity);
    double longestAt (double sampleRate) const noexcept;
    int capacityFor (double sampleRate) const noexcept;
    void aim (double samples) noexcept;

    // Asked for more than the buffer was sized for, the element would clamp
    // its delay (in debug builds: stop here instead).
    void checkReach() const noexcept;
    double clampLength (double samples) const noexcept;

    // Stores make (n) for the 32 samples of a block at the write index.
    template <typename Make>
    void writeBlock (Make&& make) noexcept
    {
        const int w = (int) writeIndex;
        const int first = std::min (blockSize, capacity - w);

        // The whole block in one piece (always, where the capacity is a
        // number of blocks) in a loop of fixed length, which is vectorised.
        if (first == blockSize)
        {
            for (int n = 0; n < blockSize; ++n)
                buffer[w + n] = make (n);
        }
        else
        {
            for (int n = 0; n < first; ++n)
                buffer[w + n] = make (n);

            for (int n = first; n < blockSize; ++n)
                buffer[n - first] = make (n);
        }

        advanceWriteIndex();
    }

    // Moves the write index on by one block, after the block was written.
    void advanceWriteIndex() noexcept
    {
        silent = false;

        // The first samples are repeated after the end, for reads that reach
        // over it.
        if ((int) writeIndex < guard || (int) writeIndex + blockSize > capacity)
            std::memcpy (buffer + capacity, buffer, guard * sizeof (double));

        writeIndex += blockSize;

        if (writeIndex >= (std::uint32_t) capacity)
            writeIndex -= (std::uint32_t) capacity;
    }

    std::unique_ptr<double[], FreeDeleter> storage;
    double* buffer = nullptr; // storage aligned to a cache line
    std::uint32_t writeIndex = 0;
    int capacity = 0;
    bool silent = true; // nothing written since the buffer was last zeroed

    DelayKernels::Motion motion;
    double longestSeconds, longestSamples;
    double rate = 1.0;
    double coefficient = 0.0;
};
