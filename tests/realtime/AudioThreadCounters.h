#pragma once

#include "LockTakers.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
 #define QUORLANE_SANITIZED 1
#else
 #define QUORLANE_SANITIZED 0
#endif

// What a watched thread did that an audio thread must never do: heap calls
// (allocations and frees), locks (each traced to its taker, LockTakers.h) and
// write() calls, which is how JUCE posts to the message thread.
namespace AudioThreadCounters
{
    struct Counts
    {
        long heapCalls, locks, writes;
    };

    // Counts the calling thread's calls for as long as it lives.
    struct Watch
    {
        Watch();
        ~Watch();
    };

    // Leaves out heap calls that the executable's own code asks for (JUCE's
    // hosting of a plug-in library, which copies SysEx into a MidiMessage):
    // what the plug-in library does is what is counted.
    void countLibrariesOnly();

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
// AudioThreadCounters.cpp), took a lock in our own code or posted. JUCE's own
// locks (a wrapper's callback lock, parameter listeners, the message-thread
// check) are named in the log and left.
inline void expectNothingForbidden()
{
    const auto counts = AudioThreadCounters::read();
    EXPECT_TRUE (QUORLANE_SANITIZED || counts.heapCalls == 0) << counts.heapCalls << " heap calls";
    EXPECT_EQ (counts.writes, 0);
    EXPECT_EQ (LockTakers::ours(), std::vector<std::string>());
    std::cout << counts.locks << " locks, taken by:\n";

    for (const auto& taker : LockTakers::all())
        std::cout << "  " << taker << "\n";
}
