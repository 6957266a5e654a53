#pragma once

#include "ScopedSettingsFile.h"
#include "WindowPixels.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

// What a user sees when an open editor follows the host, with automatic
// storing on. Blocks play on an audio thread of their own in real time (256
// samples at 48 kHz), `automate` (which sets "Late Size" to 0.9) is called
// before the 20th, and `idle` runs the host's message loop for about 10 ms a
// call. The knob and the decay time display, watched by their pixels in
// `window`, must follow within 100 ms, and the value must then be stored in
// the current preset of `savedState()`.
inline void expectEditorFollowsAndStores (void* window, const std::function<void()>& processBlock, const std::function<void()>& automate,
                                          const std::function<void()>& idle, const std::function<std::string()>& savedState)
{
    using Clock = std::chrono::steady_clock;

    // Where the skin puts the knob and the display, and how many pixels make a change.
    struct Area { const char* name; int x, y, width, height, threshold; std::vector<uint32_t> before {}; Clock::time_point changed {}; };

    Area areas[] { { "knob", 171, 59, 35, 35, 20 }, { "decay display", 326, 154, 64, 13, 5 } };
    const auto pixels = [window] (const Area& a) { return windowPixels (window, a.x, a.y, a.width, a.height); };

    for (auto& area : areas)
        area.before = pixels (area);

    ASSERT_FALSE (areas[0].before.empty()) << "the window cannot be read back";
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
    const auto seen = [&]
    {
        for (auto& area : areas)
            if (area.changed == Clock::time_point() && pixelsChanged (area.before, pixels (area)) > area.threshold)
                area.changed = Clock::now();

        return areas[0].changed != Clock::time_point() && areas[1].changed != Clock::time_point();
    };

    for (const auto end = automated + std::chrono::seconds (1); Clock::now() < end && ! seen();)
        idle();

    for (const auto end = Clock::now() + std::chrono::milliseconds (200); Clock::now() < end;)
        idle();

    playing = false;
    audio.join();

    for (const auto& area : areas)
        EXPECT_LE (area.changed == Clock::time_point() ? std::chrono::minutes (1) : area.changed - automated,
                   std::chrono::milliseconds (100)) << "the " << area.name << " follows";

    EXPECT_NEAR (storedInCurrentPreset (savedState(), "Late Size"), 0.9, 1e-6);
}
