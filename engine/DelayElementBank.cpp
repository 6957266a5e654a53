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

void DelayElementBank::loadLanes() noexcept
{
    for (int i = 0; i < laneCount; ++i)
    {
        const DelayElement& e = *elements[(size_t) i];
        lanes.length[i] = e.length;
        lanes.targetLength[i] = e.targetLength;
        lanes.depth[i] = e.depth;
        lanes.targetDepth[i] = e.targetDepth;
        lanes.glide[i] = e.glide;
        lanes.stage1[i] = e.lfoStage1;
        lanes.stage2[i] = e.lfoStage2;
        lanes.lfoTarget[i] = e.lfoTarget;
        lanes.lfoCoefficient[i] = e.lfoCoefficient;
        lanes.countdown[i] = e.lfoCountdown;
        lanes.writeBase[i] = (double) (e.writeIndex + (std::uint32_t) e.capacity);
        lanes.capacity[i] = (double) e.capacity;
        lanes.wholeCapacity[i] = e.capacity;
        lanes.wrapIndex[i] = e.capacity + DelayElement::guard - 1;
        lanes.randomA[i] = e.randomA;
        lanes.randomB[i] = e.randomB;
        lanes.settled[i] = e.lengthSettled && e.depthSettled;
    }
}

void DelayElementBank::storeLanes() noexcept
{
    for (int i = 0; i < laneCount; ++i)
    {
        DelayElement& e = *elements[(size_t) i];

        e.length = lanes.length[i];
        e.depth = lanes.depth[i];

        // A glide that a further step would leave unchanged has settled.
        e.lengthSettled = e.length == e.length - (e.length - e.targetLength) * e.glide + 1e-20;
        e.depthSettled = e.depth == e.depth - (e.depth - e.targetDepth) * e.glide + 1e-20;
        e.lfoStage1 = lanes.stage1[i];
        e.lfoStage2 = lanes.stage2[i];
        e.lfoTarget = lanes.lfoTarget[i];
        e.lfoCountdown = lanes.countdown[i];
        e.randomA = lanes.randomA[i];
        e.randomB = lanes.randomB[i];
    }
}

void DelayElementBank::beginBlock (unsigned q) noexcept
{
    quality = q;
    loadLanes();

    // A lane whose delay stays at least a block long never reads what it
    // writes during the block, so all its reads can be made now.
    for (int i = 0; i < laneCount; ++i)
        readsReady[(size_t) i] = std::min (lanes.length[i], lanes.targetLength[i]) >= blockSize;

    kernels.plan (lanes, plan, laneCount);
    storeLanes();

    for (int i = 0; i < laneCount; ++i)
    {
        const double* buffer = elements[(size_t) i]->buffer;

        if (readsReady[(size_t) i])
            kernels.interpolate (buffer, plan.index[i], plan.fraction[i], reads[i], blockSize, quality);

        // Too many elements read at once for the processor to follow every
        // stream by itself: fetch what the next block will read.
        for (int line = 1; line <= blockSize + 8; line += 8)
            __builtin_prefetch (buffer + plan.index[i][blockSize - 1] + line);
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
        kernels.interpolate (buffer, &plan.index[lane][n], &plan.fraction[lane][n], &d, 1, quality);
        kernels.allpass (&d, g, io + n, buffer + w, 1);

        if (w < (std::uint32_t) DelayElement::guard)
            buffer[w + capacity] = buffer[w];
    }

    e.advanceWriteIndex();
}
