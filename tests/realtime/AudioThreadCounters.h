#pragma once

#include <atomic>

// What a watched thread did that an audio thread must never do: heap calls
// (allocations and frees through the global operators), mutex locks (and how
// many of them had to wait) and write() calls, which is how JUCE posts to the
// message thread.
namespace AudioThreadCounters
{
    struct Counts
    {
        long heapCalls, locks, lockWaits, writes;
    };

    // Counts the calling thread's calls for as long as it lives.
    struct Watch
    {
        Watch();
        ~Watch();
    };

    Counts read();
}
