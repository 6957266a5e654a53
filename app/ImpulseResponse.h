#pragma once

#include "DecayMeasurement.h"
#include "PluginSettings.h"

#include <juce_audio_basics/juce_audio_basics.h>

// The plug-in's response to a unit impulse in both channels, rendered until
// it has died away, with the plug-in's own decay-time estimate.
struct ImpulseResponse
{
    static constexpr double longestSeconds = 300.0;

    // Far below anything audible, so that truncation does not bend the
    // decay curve in the range the times are fitted over.
    static constexpr float silenceLevel = 1.0e-7f; // -140 dBFS

    juce::AudioBuffer<float> samples;
    double sampleRate = 48000.0;
    double estimatedDecaySeconds = 0.0; // the plug-in's "Decay Time"
    bool cutShort = false;              // still sounding at longestSeconds

    static ImpulseResponse render (const PluginSettings& settings, double sampleRate);

    DecayTimes measure (int channel) const;

    // The measured times per channel beside the estimate, as a small table.
    juce::String report() const;
};
