#pragma once

#include <juce_events/juce_events.h>

#include <cstdlib>
#include <iostream>

// A broken promise of a reader: libFuzzer keeps the input that caused it.
[[noreturn]] inline void fuzzFailure (const juce::String& what)
{
    std::cerr << "fuzz check failed: " << what << std::endl;
    std::abort();
}

// JUCE's message manager for the whole run. Never destroyed, like the objects
// the fuzzers build on it, so that nothing depends on the order of exit.
inline void initialiseJuceForFuzzing()
{
    static auto* juce = new juce::ScopedJuceInitialiser_GUI();
    juce::ignoreUnused (juce);
}

// The object a fuzzer works on for the whole run, built on first use once
// JUCE is up, and never destroyed either.
template <typename Object>
Object& fuzzingInstance()
{
    initialiseJuceForFuzzing();
    static auto* instance = new Object();
    return *instance;
}
