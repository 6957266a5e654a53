#pragma once

#include "WindowPixels.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

// Watches an open editor, by its pixels, for the "Late Size" knob and the
// decay time display to change after an automated move: what a user sees
// when the editor follows the host.
class EditorFollowWatch
{
public:
    using Clock = std::chrono::steady_clock;

    explicit EditorFollowWatch (void* nativeWindow)
        : window (nativeWindow), knobBefore (knob()), decayBefore (decay())
    {
    }

    bool canSee() const { return ! knobBefore.empty(); }

    // As a DAW plays automation: blocks on an audio thread of its own in
    // real time (256 samples at 48 kHz), `automate` called before the 20th,
    // while `idle` runs the host's message loop for about 10 ms a call. Then
    // expects the knob and the decay display to have followed within 100 ms.
    void followAutomation (const std::function<void()>& processBlock, const std::function<void()>& automate,
                           const std::function<void()>& idle)
    {
        std::atomic<bool> playing { true };
        std::atomic<Clock::rep> automatedAt { 0 };
        std::thread audio ([&]
        {
            for (int block = 0; playing; ++block)
            {
                if (block == 20)
                {
                    automate();
                    automatedAt = Clock::now().time_since_epoch().count();
                }

                processBlock();
                std::this_thread::sleep_for (std::chrono::microseconds (5333));
            }
        });

        while (automatedAt == 0)
            idle();

        const auto automated = Clock::time_point (Clock::duration (automatedAt.load()));

        for (const auto end = automated + std::chrono::seconds (1); Clock::now() < end && ! look();)
            idle();

        for (const auto end = Clock::now() + std::chrono::milliseconds (200); Clock::now() < end;)
            idle();

        playing = false;
        audio.join();
        expectFollowed (automated);
    }

private:
    // Looks once; true when both have changed.
    bool look()
    {
        if (knobMoved == Clock::time_point() && pixelsChanged (knobBefore, knob()) > 20)
            knobMoved = Clock::now();

        if (decayShown == Clock::time_point() && pixelsChanged (decayBefore, decay()) > 5)
            decayShown = Clock::now();

        return knobMoved != Clock::time_point() && decayShown != Clock::time_point();
    }

    // Both changed within 100 ms of the automated move. Under Wine the
    // screen read back never shows a child window's repaint, so there only
    // the plug-in's other checks count.
    void expectFollowed (Clock::time_point automated) const
    {
       #if ! defined(_WIN32)
        EXPECT_LE (delay (knobMoved, automated), std::chrono::milliseconds (100)) << "the knob follows";
        EXPECT_LE (delay (decayShown, automated), std::chrono::milliseconds (100)) << "the decay display follows";
       #else
        (void) automated;
       #endif
    }

    // Where the skin puts the knob and the display.
    std::vector<uint32_t> knob() const { return windowPixels (window, 171, 59, 35, 35); }
    std::vector<uint32_t> decay() const { return windowPixels (window, 326, 154, 64, 13); }

    static Clock::duration delay (Clock::time_point seen, Clock::time_point automated)
    {
        return seen == Clock::time_point() ? std::chrono::minutes (1) : seen - automated;
    }

    void* window;
    std::vector<uint32_t> knobBefore, decayBefore;
    Clock::time_point knobMoved {}, decayShown {};
};
