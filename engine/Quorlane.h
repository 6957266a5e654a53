#pragma once

#include "framework/CorvelleEffect.h"

// The product: the reverb engine behind the effect base, its parameter texts
// and the published decay-time estimate.
class Quorlane : public CorvelleEffect
{
public:
    static constexpr uint32_t decayTimeIndex = 21;

    Quorlane();
    ~Quorlane() override;

    juce::String getPluginName() const override { return "Quorlane"; }
    juce::String getShortCode() const override { return "QL"; }

    juce::String getParameterDisplayText (int index, float normalisedValue) const override;

    double getTailLengthSeconds() const override;

    void parameterChanged (Parameter& parameter) override;
    void prepareToPlay (double sampleRate, int maximumExpectedSamplesPerBlock) override;
    void processBlock (juce::AudioBuffer<float>& buffer, juce::MidiBuffer& midiMessages) override;
    using AudioProcessor::processBlock;

protected:
    std::unique_ptr<Core> createCore() override;
    juce::StringArray getMixParameterCandidates() const override { return { "FX", "Wet Gain" }; }

private:
    // "Decay Time" holds the estimate in seconds (its range, 0..1000, is read
    // as seconds too), so its normalised value is seconds / 1000.
    void publishDecayTime();

    std::atomic<double> decayRate { 44100.0 }; // the rate the estimate is made for
    std::atomic<double> decaySeconds { 0.0 };

    // An input of the estimate moved on the audio thread: the next block
    // publishes the estimate once, however many inputs the host moved.
    std::atomic<bool> decayStale { false };
};
