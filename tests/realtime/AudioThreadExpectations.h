#pragma once

#include "AudioThreadCounters.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>

// `play (first, last)` over `blocks` blocks, on two audio threads of its own
// one after the other: hosts change threads when their engine restarts.
inline void playOnTwoAudioThreads (int blocks, const std::function<void (int, int)>& play)
{
    std::thread (play, 0, blocks / 2).join();
    std::thread (play, blocks / 2, blocks).join();
}

// No watched thread touched the heap, took a lock of ours, waited on a lock
// or posted.
inline void expectNothingForbidden()
{
    const auto counts = AudioThreadCounters::read();
    EXPECT_EQ (counts.heapCalls, 0);
    EXPECT_EQ (counts.ownLocks, 0);
    EXPECT_EQ (counts.lockWaits, 0);
    EXPECT_EQ (counts.writes, 0);
}
