#pragma once

#include <juce_audio_basics/juce_audio_basics.h>

// A short dry phrase to hear the reverb on, made from nothing: a few plucked
// string notes spread across the stereo field, a drum-like hit and a click,
// then silence for the tail to ring into. The same every time.
juce::AudioBuffer<float> synthesiseDemoPhrase (double sampleRate);
