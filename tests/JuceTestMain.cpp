#include <gtest/gtest.h>
#include <juce_events/juce_events.h>

// JUCE's message loop and singletons live for the whole run, as in a host.
int main (int argc, char** argv)
{
    testing::InitGoogleTest (&argc, argv);
    juce::ScopedJuceInitialiser_GUI juce;
    return RUN_ALL_TESTS();
}
