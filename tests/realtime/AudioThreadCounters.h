#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <thread>

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
 #define QUORLANE_SANITIZED 1
#else
 #define QUORLANE_SANITIZED 0
#endif

// What a watched thread did that an audio thread must never do: heap calls
// (allocations and frees), locks of ours (mutexes not marked as JUCE's own),
// waits on those, and write() calls, which is how JUCE posts to the message
// thread.
namespace AudioThreadCounters
{
    struct Counts
    {
        long heapCalls, ownLocks, lockWaits, writes;
    };

    // Counts the calling thread's calls for as long as it lives.
    struct Watch
    {
        Watch();
        ~Watch();
    };

    // Marks the first (or last) mutex that `action` locks on the calling
    // thread as JUCE's own: a parameter's listener lock, which the editor's
    // gestures and the host's automation share by JUCE's design, taken first
    // by the parameter or last by a wrapper after our code has run.
    void exemptFirstLockOf (const std::function<void()>& action);
    void exemptLastLockOf (const std::function<void()>& action);

    Counts read();
}

// `play (first, last)` over `blocks` blocks, on two audio threads of its own
// one after the other: hosts change threads when their engine restarts.
inline void playOnTwoAudioThreads (int blocks, const std::function<void (int, int)>& play)
{
    std::thread (play, 0, blocks / 2).join();
    std::thread (play, blocks / 2, blocks).join();
}

// No watched thread touched the heap (counted in the plain build, see
// AudioThreadCounters.cpp) or posted and, where the locks taken are ours to
// count (`countLocks`), took a lock of ours or waited on one.
inline void expectNothingForbidden (bool countLocks = true)
{
    const auto counts = AudioThreadCounters::read();
    EXPECT_TRUE (QUORLANE_SANITIZED || counts.heapCalls == 0) << counts.heapCalls << " heap calls";
    EXPECT_EQ (counts.writes, 0);

    if (countLocks)
    {
        EXPECT_EQ (counts.ownLocks, 0);
        EXPECT_EQ (counts.lockWaits, 0);
    }
}
