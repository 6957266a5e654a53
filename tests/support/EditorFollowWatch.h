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

    explicit EditorFollowWatch (void* nativeWindow) : window (nativeWindow)
    {
        for (auto& area : areas)
            area.before = pixels (area);
    }

    bool canSee() const { return ! areas[0].before.empty(); }

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
        const auto look = [&]
        {
            for (auto& area : areas)
                if (area.changed == Clock::time_point() && pixelsChanged (area.before, pixels (area)) > area.threshold)
                    area.changed = Clock::now();

            return areas[0].changed != Clock::time_point() && areas[1].changed != Clock::time_point();
        };

        for (const auto end = automated + std::chrono::seconds (1); Clock::now() < end && ! look();)
            idle();

        for (const auto end = Clock::now() + std::chrono::milliseconds (200); Clock::now() < end;)
            idle();

        playing = false;
        audio.join();

        // Under Wine the screen read back never shows a child window's
        // repaint, so there only the plug-in's other checks count.
       #if ! defined(_WIN32)
        for (const auto& area : areas)
            EXPECT_LE (area.changed == Clock::time_point() ? std::chrono::minutes (1) : area.changed - automated,
                       std::chrono::milliseconds (100)) << "the " << area.name << " follows";
       #endif
    }

private:
    // Where the skin puts the knob and the display, and how many pixels make a change.
    struct Area
    {
        const char* name;
        int x, y, width, height, threshold;
        std::vector<uint32_t> before {};
        Clock::time_point changed {};
    };

    std::vector<uint32_t> pixels (const Area& area) const { return windowPixels (window, area.x, area.y, area.width, area.height); }

    void* window;
    Area areas[2] { { "knob", 171, 59, 35, 35, 20 }, { "decay display", 326, 154, 64, 13, 5 } };
};
