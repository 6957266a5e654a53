#pragma once

#include <juce_audio_basics/juce_audio_basics.h>

#include <atomic>
#include <functional>

class Quorlane;

// How long the output runs on after the input has ended.
struct TailLength
{
    // Below it a tail is inaudible even when turned up a long way.
    static constexpr float inaudible = 3.1622777e-5f; // -90 dBFS

    static TailLength fixed (double seconds) { return { false, seconds, inaudible }; }
    static TailLength untilSilent (double limitSeconds, float level = inaudible) { return { true, limitSeconds, level }; }

    bool stopsAtSilence = true;
    double seconds = 60.0; // the exact length, or the limit of a tail that stops at silence
    float silenceLevel = inaudible;

    // Silence: every sample of both channels below silenceLevel this long.
    static constexpr double silenceSeconds = 0.5;
};

struct RenderSummary
{
    juce::int64 numSamples = 0; // written to the sink
    float peak = 0.0f;          // the output's largest magnitude; infinite if anything was not finite
    juce::int64 nonFiniteInputSamples = 0; // NaN or infinite input samples, which the plug-in takes as silence
    bool tailCutShort = false;  // a tail meant to stop at silence was still sounding at its limit
};

// Fills the stereo block from its start and returns how many samples it
// filled; fewer than the block holds means the input has ended.
using InputBlockSource = std::function<int (juce::AudioBuffer<float>& block)>;

// Takes the given samples of a stereo block.
using OutputBlockSink = std::function<void (const juce::AudioBuffer<float>& block, int start, int numSamples)>;

// Streams the input through a plug-in the way an offline host bounce does,
// then the tail. The plug-in's latency is taken out, so output sample n
// belongs to input sample n; the output holds the input's length plus the
// tail. The plug-in should already carry its settings: they are in place
// before it is prepared, so nothing glides at the start.
RenderSummary renderThroughPlugin (Quorlane& plugin, double sampleRate,
                                   const InputBlockSource& source, const OutputBlockSink& sink,
                                   const TailLength& tail,
                                   std::atomic<juce::int64>* inputSamplesDone = nullptr);
