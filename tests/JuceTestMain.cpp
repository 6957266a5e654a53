#include <gtest/gtest.h>
#include <juce_events/juce_events.h>

#include "support/ScopedConfigHome.h"
#include "support/WindowManagerAtoms.h"

// JUCE's message loop and singletons live for the whole run, as in a host.
int main (int argc, char** argv)
{
    testing::InitGoogleTest (&argc, argv);
    createWindowManagerAtoms();
    juce::ScopedJuceInitialiser_GUI juce;
    // Plug-in instances read user settings; never the real user's.
    const ScopedConfigHome configHome;
    return RUN_ALL_TESTS();
}
