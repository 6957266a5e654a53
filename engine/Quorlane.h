#pragma once

#include "framework/CorvelleEffect.h"

// The product: the reverb engine behind the effect base, its editor, its
// parameter texts and the published decay-time estimate.
class Quorlane : public CorvelleEffect
{
public:
    static constexpr uint32_t decayTimeIndex = 21;

    Quorlane();
    ~Quorlane() override;

    juce::String getPluginName() const override { return "Quorlane"; }
    juce::String getShortCode() const override { return "QL"; }

    juce::String getParameterDisplayText (int index, float normalisedValue) const override;

    // From the parameters' values as they are now, on any thread.
    double getTailLengthSeconds() const override;

    void prepareToPlay (double sampleRate, int maximumExpectedSamplesPerBlock) override;
    juce::AudioProcessorEditor* createEditor() override;

    // The decay display is saved with the values presets never hold; it is
    // brought up to date first, so a state never holds one behind its knobs.
    std::unique_ptr<juce::XmlElement> buildState() override;

protected:
    std::unique_ptr<Core> createCore() override;
    juce::StringArray getMixParameterCandidates() const override { return { "FX", "Wet Gain" }; }
    void pollMessageThread() override;

private:
    double estimateDecaySeconds() const;

    // "Decay Time" holds the estimate in seconds (its range, 0..1000, is read
    // as seconds too), so its normalised value is seconds / 1000. The poll
    // keeps it in step with the parameters, for the editor.
    void publishDecayTime();

    std::atomic<double> decayRate { 44100.0 }; // the rate the estimate is made for
};
