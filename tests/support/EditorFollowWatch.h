#pragma once

#include "WindowPixels.h"

#include <gtest/gtest.h>

#include <chrono>

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

private:
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
