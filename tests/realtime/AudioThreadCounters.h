#pragma once

#include "LockTakers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
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
    extern std::atomic<long> heapCalls, locks, writes;

    // Counts the calling thread's calls for as long as it lives.
    struct Watch { Watch(); ~Watch(); };

    // Leaves out heap calls that the executable's own code asks for (JUCE's
    // hosting of a plug-in library, which copies SysEx into a MidiMessage):
    // what the plug-in library does is what is counted.
    void countLibrariesOnly();
}

// One block of a busy session as a host plays it, which each format hands
// over its own way: every parameter automated, a controller, SysEx longer
// than any short message, every 40th block a program change.
struct SessionBlock
{
    int number;
    bool first, last; // on its audio thread

    float automation (int parameter) const { return (float) ((number * 7 + parameter * 13) % 101) / 100.0f; }
    int controller() const { return 20 + number % 20; }
    int controllerValue() const { return number % 128; }
    int program() const { return number % 40 == 0 ? (number / 40) % 47 : -1; }

    static constexpr unsigned char sysEx[] = { 0xf0, 0x7e, 0x7f, 0x06, 0x01, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0xf7 };
};

// `blocks` blocks played on two audio threads one after the other (hosts
// change threads when their engine restarts), each watched from its first
// block on, after `prime` (what a wrapper makes once per thread); a block
// every `blockTime` when it is given. `meanwhile` runs on the calling thread
// until the end (a host's message loop). Then no watched thread may have
// touched the heap (counted in the plain build, see AudioThreadCounters.cpp),
// taken a lock in our own code or posted. JUCE's own locks (a wrapper's
// callback lock, parameter listeners, the message-thread check) are named in
// the log and left.
inline void playWatched (int blocks, const std::function<void (const SessionBlock&)>& play,
                         const std::function<void()>& prime = [] {},
                         const std::function<void()>& meanwhile = [] { std::this_thread::sleep_for (std::chrono::milliseconds (10)); },
                         std::chrono::microseconds blockTime = {})
{
    std::atomic<bool> finished { false };
    std::thread host ([&]
    {
        for (int half = 0; half < 2; ++half)
            std::thread ([&, half]
            {
                const int from = half * blocks / 2, to = (half + 1) * blocks / 2;
                prime();
                const AudioThreadCounters::Watch watch;
                auto due = std::chrono::steady_clock::now();

                for (int block = from; block < to; ++block)
                {
                    play ({ block, block == from, block == to - 1 });

                    if (blockTime.count() > 0)
                        std::this_thread::sleep_until (due += blockTime);
                }
            }).join();

        finished = true;
    });

    while (! finished)
        meanwhile();

    host.join();
    using namespace AudioThreadCounters;
    EXPECT_TRUE (QUORLANE_SANITIZED || heapCalls == 0) << heapCalls << " heap calls";
    EXPECT_EQ (writes, 0);
    EXPECT_EQ (LockTakers::named (true), std::vector<std::string>());
    std::cout << locks << " locks, taken by:\n";

    for (const auto& taker : LockTakers::named (false))
        std::cout << "  " << taker << "\n";
}
