#pragma once

#include <atomic>
#include <functional>

// What a watched thread did that an audio thread must never do: heap calls
// (allocations and frees through the global operators), mutex locks (those
// not of JUCE's own that were marked exempt, and how many of all had to wait)
// and write() calls, which is how JUCE posts to the message thread.
namespace AudioThreadCounters
{
    struct Counts
    {
        long heapCalls, locks, ownLocks, lockWaits, hostLockWaits, writes;
    };

    // Counts the calling thread's calls for as long as it lives.
    struct Watch
    {
        Watch();
        ~Watch();
    };

    // Marks the first mutex that `action` locks on the calling thread as
    // JUCE's own (a parameter's listener lock, which the editor's gestures and
    // the host's automation share by JUCE's design): waits on it are counted
    // apart, in hostLockWaits.
    void exemptFirstLockOf (const std::function<void()>& action);

    // The same for the last mutex `action` locks: JUCE's listener lock, which
    // a wrapper takes after the plug-in's own code has run.
    void exemptLastLockOf (const std::function<void()>& action);

    Counts read();
}
