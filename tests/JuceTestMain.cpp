#include <gtest/gtest.h>
#include <juce_events/juce_events.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "support/ScopedConfigHome.h"
#include "support/WindowManagerAtoms.h"

namespace
{
    // JUCE's threads are detached: stopping one returns once its work is
    // done, while the thread itself may still be exiting. The leak checker
    // walks every thread when the process ends and must not meet one half
    // gone, so the run ends only once this thread is the last.
    void awaitOtherThreadsExiting()
    {
       #if JUCE_LINUX
        const auto threadCount = []
        {
            std::error_code error;
            const std::filesystem::directory_iterator tasks ("/proc/self/task", error);
            return error ? 1 : std::distance (begin (tasks), end (tasks));
        };

        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds (2);

        while (threadCount() > 1 && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for (std::chrono::milliseconds (5));
       #endif
    }
}

// JUCE's message loop and singletons live for the whole run, as in a host.
int main (int argc, char** argv)
{
    testing::InitGoogleTest (&argc, argv);
    createWindowManagerAtoms();
    int result = 0;

    {
        juce::ScopedJuceInitialiser_GUI juce;
        // Plug-in instances read user settings; never the real user's.
        const ScopedConfigHome configHome;
        result = RUN_ALL_TESTS();
    }

    awaitOtherThreadsExiting();
    return result;
}
