#pragma once

#include "Clock.h"
#include "CorePresetChanger.h"
#include "engine/CorvelleEffectCore.h"
#include "presets/BasePluginOldStyle.h"

// The base of the product line's effects. It owns the processing core, runs
// the processing frame (each host block is split at MIDI events and clock
// ticks and handed to the core in pieces), posts parameter changes into the
// core's inbox without a lock, and drives the core's quality from the hidden
// "Quality" parameter. The product derives from it, creates its core and its
// editor, and starts and stops the message-thread poll.
class CorvelleEffect : public BasePluginOldStyle
{
public:
    using Core = CorvelleEffectCore;

    static constexpr float qualityStepSize = 0.33333334f;
    static constexpr int numQualitySteps = 4;

    CorvelleEffect();
    ~CorvelleEffect() override;

    // Finds "Quality", creates the clock and the core, and brings the core to
    // the default quality, then starts the message-thread poll. The product
    // calls it at the end of its constructor, and stopMessageThreadPoll()
    // first thing in its destructor.
    void initialise();

    virtual bool supportsQuality() const { return true; }
    virtual bool isQualityLocked() const { return false; }

    // Silent preset changes fade the core's output around the change.
    bool supportsSilentPresetChange() const override { return true; }

    static int qualityStepFor (float normalisedValue) noexcept;
    static juce::String qualityKeyword (int step);
    static int qualityStepForKeyword (const juce::String& keyword); // -1 when unknown

    int getCurrentQualityStep() const;
    int getDefaultQuality() const noexcept { return defaultQuality; }
    // The user's choice for new instances (0..3; anything else is ignored).
    // It is saved in the user settings at once; the current quality, a
    // per-project setting, stays as it is.
    void setDefaultQuality (int step);

    Core* getCore() const noexcept { return core.get(); }
    juce::CriticalSection& getProcessingLock() noexcept { return processingLock; }

    std::unique_ptr<juce::XmlElement> buildState() override;

    // <QualitySettings default="low|medium|high|highest"/> in the user settings.
    void readUserSettings (const juce::XmlElement& settings) override;
    void writeUserSettings (juce::XmlElement& settings) override;

    //==============================================================================
    void prepareToPlay (double sampleRate, int maximumExpectedSamplesPerBlock) override;
    void releaseResources() override;
    void processBlock (juce::AudioBuffer<float>& buffer, juce::MidiBuffer& midiMessages) override;
    using AudioProcessor::processBlock;
    // A stopped transport: the core forgets the signal, so playback starts
    // from silence. It never waits, so hosts may call it on the audio thread.
    void reset() override;
    bool isPrepared() const noexcept { return prepared.load() != 0; }

protected:
    virtual std::unique_ptr<Core> createCore() = 0;

    void postToEngine (const Parameter& parameter) noexcept override;

    bool restoreStateElement (const juce::XmlElement& element) override;

    int defaultQuality = 0;

private:
    void renderPending();
    void handleMidiEvent (const juce::MidiMessageMetadata& event);
    void synchroniseClocks();

    std::atomic<int> prepared { 0 };
    std::atomic<bool> resetPending { false };
    bool isStereo = true;
    int pendingSamples = 0;
    int processedSamples = 0;
    float* leftPtr = nullptr;
    float* rightPtr = nullptr;
    juce::OwnedArray<Clock> clocks;
    std::unique_ptr<Core> core;
    juce::CriticalSection processingLock;
    std::unique_ptr<CorePresetChanger> presetChanger; // after the lock: it takes it when destroyed

    Parameter* qualityParameter = nullptr;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (CorvelleEffect)
};
