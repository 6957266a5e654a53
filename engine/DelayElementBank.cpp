#include "engine/DelayElementBank.h"

#include <algorithm>
#include <cassert>

DelayElementBank::DelayElementBank (const DelayKernels& k) noexcept : kernels (k)
{
}

int DelayElementBank::add (DelayElement& element) noexcept
{
    assert (laneCount < maxLanes);
    elements[(size_t) laneCount] = &element;
    return laneCount++;
}

void DelayElementBank::beginBlock (unsigned q) noexcept
{
    quality = q;

    for (int i = 0; i < laneCount; ++i)
    {
        DelayElement& e = *elements[(size_t) i];

        // A lane whose delay stays at least a block long never reads what it
        // writes during the block, so all its reads can be made now.
        readsReady[(size_t) i] = std::min (e.motion.length, e.motion.targetLength) >= blockSize;

        if (readsReady[(size_t) i])
            kernels.planAndRead (e.motion, e.writeIndex, e.capacity, e.buffer, reads[i], quality);
        else
            kernels.plan (e.motion, e.writeIndex, e.capacity, index[i], fraction[i]);
    }
}

void DelayElementBank::process (int lane, double* io) noexcept
{
    DelayElement& e = *elements[(size_t) lane];
    const double g = e.coefficient;

    if (readsReady[(size_t) lane])
    {
        const int w = (int) e.writeIndex;
        const int first = std::min (blockSize, e.capacity - w);

        kernels.allpass (reads[lane], g, io, e.buffer + w, first);

        if (first < blockSize)
            kernels.allpass (reads[lane] + first, g, io + first, e.buffer, blockSize - first);

        e.advanceWriteIndex();
        return;
    }

    // A short delay reads samples of this very block: one sample at a time.
    double* buffer = e.buffer;
    const auto capacity = (std::uint32_t) e.capacity;
    const std::uint32_t start = e.writeIndex;

    for (int n = 0; n < blockSize; ++n)
    {
        std::uint32_t w = start + (std::uint32_t) n;
        w -= w >= capacity ? capacity : 0;

        double d;
        kernels.interpolate (buffer, &index[lane][n], &fraction[lane][n], &d, 1, quality);
        kernels.allpass (&d, g, io + n, buffer + w, 1);

        if (w < (std::uint32_t) DelayElement::guard)
            buffer[w + capacity] = buffer[w];
    }

    e.advanceWriteIndex();
}

void DelayElementBank::processChain (int first, int step, int count, double* io) noexcept
{
    bool whole = true;

    // In one pass where every stage's reads are made and its block is
    // written without a wrap.
    for (int s = 0; s < count; ++s)
    {
        const int lane = first + s * step;
        const DelayElement& e = *elements[(size_t) lane];
        whole = whole && readsReady[(size_t) lane] && (int) e.writeIndex + blockSize <= e.capacity;
        chain.written[s] = e.buffer + e.writeIndex;
        chain.gains[s] = e.coefficient;
    }

    if (! whole)
    {
        for (int s = 0; s < count; ++s)
            process (first + s * step, io);

        return;
    }

    kernels.allpassChain (reads[first], step * blockSize, chain.gains, io, chain.written, count);

    for (int s = 0; s < count; ++s)
        elements[(size_t) (first + s * step)]->advanceWriteIndex();
}
