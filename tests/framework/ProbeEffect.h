#pragma once

#include "engine/ParameterInbox.h"
#include "framework/CorvelleEffect.h"
#include "presets/PresetBank.h"

#include <string>
#include <vector>

// An effect around a stand-in core that shows what the processing frame hands
// it: its inbox delivered as an engine takes it, and, when it logs,
// each render call beside the MIDI the effect handled. It renders the left
// channel times two and the right times three, and a preset change reaches
// its quiet point a fixed number of render calls after it began, as a fade would.
struct ProbeCore : CorvelleEffect::Core
{
    static constexpr int fadeCalls = 12;
    using Log = std::vector<std::string>;

    void setParameter (uint32_t index, float value) noexcept { values[index] = value; }
    void setQuality (unsigned q) noexcept { quality = (int) q; }
    void beginPresetChange() noexcept { callsToQuietPoint = fadeCalls; }

    void postParameter (uint32_t index, float value) noexcept override { inbox.postParameter (index, value); }
    void postQuality (unsigned q) noexcept override { inbox.postQuality (q); }
    void postPresetChange() noexcept override { inbox.postPresetChange(); }
    void reset() override { note ("reset"); }
    void prepare (double, int) override { inbox.deliverTo (*this); }
    int getLatency() const override { return 32; }
    void setPresetChangeTarget (PresetChangeTarget* t) noexcept override { target = t; }
    bool isPresetFadeActive() const noexcept override { return callsToQuietPoint > 0; }
    void requestMeters() noexcept override {}
    bool takeMeters (float&, float&) noexcept override { return false; }

    void process (const float* const* in, float* const* out, int n) override
    {
        juce::FloatVectorOperations::multiply (out[0], in[0], 2.0f, n);
        juce::FloatVectorOperations::multiply (out[1], in[1], 3.0f, n);
        render ("stereo " + std::to_string (n));
    }

    void processMono (float* const* channels, int n) override
    {
        juce::FloatVectorOperations::multiply (channels[0], 2.0f, n);
        render ("mono " + std::to_string (n));
    }

    void note (const std::string& entry) { if (log != nullptr) log->push_back (entry); }

    void render (const std::string& entry)
    {
        note (entry);
        inbox.deliverTo (*this);

        if (callsToQuietPoint > 0 && --callsToQuietPoint == 0 && target != nullptr)
        {
            target->applyPendingPresetChange();
            inbox.deliverTo (*this);
        }
    }

    // What the engine runs from its next sample on: what it holds, with what
    // is waiting in its inbox taken first.
    float runs (uint32_t index)
    {
        inbox.deliverTo (*this);
        return values[index];
    }

    ParameterInbox inbox;
    std::array<float, ParameterInbox::maxIndices> values {};
    int quality = -1;
    Log* log = nullptr;
    PresetChangeTarget* target = nullptr;
    int callsToQuietPoint = 0;
};

struct ProbeEffect : CorvelleEffect
{
    // With logging, the core's render calls are logged beside the MIDI handled.
    explicit ProbeEffect (bool logging = false) : log (logging ? &calls : nullptr) { initialise(); }

    juce::String getPluginName() const override { return "Quorlane"; }
    double getTailLengthSeconds() const override { return 0.0; }
    juce::AudioProcessorEditor* createEditor() override { return nullptr; }

    std::unique_ptr<Core> createCore() override
    {
        auto made = std::make_unique<ProbeCore>();
        made->log = log;
        probe = made.get();
        return made;
    }

    void handleControllerMessage (const juce::MidiMessage& m) override
    {
        if (log != nullptr)
            log->push_back ("cc " + std::to_string (m.getControllerNumber()));

        CorvelleEffect::handleControllerMessage (m);
    }

    void selectPresetFromProgramChange (int program) override
    {
        if (log != nullptr)
            log->push_back ("program " + std::to_string (program));

        CorvelleEffect::selectPresetFromProgramChange (program);
    }

    // Every slot's values from one formula, the bank's number apart.
    static std::array<float, numPresetableParameters> valuesOf (int bankNumber, int slot)
    {
        std::array<float, numPresetableParameters> values;

        for (int i = 0; i < numPresetableParameters; ++i)
            values[(size_t) i] = 0.05f + 0.45f * (float) bankNumber + 0.003f * (float) slot + 0.001f * (float) i;

        return values;
    }

    void loadBank (int number)
    {
        PresetBankRecord bank;
        bank.reset (getDefaultPreset());

        for (int slot = 0; slot < numSlots; ++slot)
            bank.slots[(size_t) slot].values = valuesOf (number, slot);

        readBankElement (*PresetBank::write (bank, getParameterManager(), getPluginName()));
    }

    // One block through the effect: what the core and the effect logged.
    ProbeCore::Log process (juce::AudioBuffer<float>& buffer, juce::MidiBuffer midi = {})
    {
        calls.clear();
        processBlock (buffer, midi);
        return calls;
    }

    ProbeCore::Log calls;
    ProbeCore::Log* log;
    ProbeCore* probe = nullptr;
};
