#include "framework/CorvelleEffect.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

namespace
{
    // Logs its render calls into the effect's log, beside the effect's MIDI
    // handling, so that their order can be checked.
    struct RecordingCore : CorvelleEffect::Core
    {
        explicit RecordingCore (std::vector<std::string>& l) : log (l) {}

        void reset() override { log.push_back ("reset"); }
        void prepare (double, int) override {}
        void postParameter (uint32_t index, float value) noexcept override { parameters.emplace_back (index, value); }
        void postQuality (unsigned q) noexcept override { quality = (int) q; }
        void postPresetChange() noexcept override {}
        int getLatency() const override { return 32; }
        void setPresetChangeTarget (PresetChangeTarget*) noexcept override {}
        bool isPresetFadeActive() const noexcept override { return false; }
        void requestMeters() noexcept override {}
        bool takeMeters (float&, float&) noexcept override { return false; }

        void process (const float* const* in, float* const* out, int n) override
        {
            log.push_back ("stereo " + std::to_string (n));
            juce::FloatVectorOperations::multiply (out[0], in[0], 2.0f, n);
            juce::FloatVectorOperations::multiply (out[1], in[1], 3.0f, n);
        }

        void processMono (float* const* channels, int n) override
        {
            log.push_back ("mono " + std::to_string (n));
            juce::FloatVectorOperations::multiply (channels[0], 2.0f, n);
        }

        std::vector<std::string>& log;
        std::vector<std::pair<uint32_t, float>> parameters;
        int quality = -1;
    };

    struct TestEffect : CorvelleEffect
    {
        explicit TestEffect (bool withCore = true) : hasCore (withCore) { initialise(); }

        juce::String getPluginName() const override { return "Quorlane"; }
        double getTailLengthSeconds() const override { return 0.0; }
        juce::AudioProcessorEditor* createEditor() override { return nullptr; }

        std::unique_ptr<Core> createCore() override
        {
            if (! hasCore)
                return nullptr;
            auto c = std::make_unique<RecordingCore> (log);
            recordingCore = c.get();
            return c;
        }

        void handleControllerMessage (const juce::MidiMessage& m) override { log.push_back ("cc " + std::to_string (m.getControllerNumber())); }

        int getNumPresets() const override { return 4; }
        void selectPresetFromProgramChange (int program) override { log.push_back ("program " + std::to_string (program)); }

        bool hasCore;
        std::vector<std::string> log;
        RecordingCore* recordingCore = nullptr;
    };

    juce::AudioBuffer<float> ramp (int channels, int samples)
    {
        juce::AudioBuffer<float> b (channels, samples);
        for (int c = 0; c < channels; ++c)
            for (int i = 0; i < samples; ++i)
                b.setSample (c, i, (float) (i + 1) * (c == 0 ? 1.0f : -1.0f));
        return b;
    }

    using Log = std::vector<std::string>;

    // One block through the effect: what the core and the effect logged.
    Log process (TestEffect& fx, juce::AudioBuffer<float>& buffer, juce::MidiBuffer midi = {})
    {
        fx.log.clear();
        fx.processBlock (buffer, midi);
        return fx.log;
    }
}

TEST (ProcessingFrame, SplitsTheBlockOnlyAtMidiEventsSoControlIsSampleAccurate)
{
    TestEffect fx;
    fx.prepareToPlay (48000.0, 256);
    auto buffer = ramp (2, 256);
    EXPECT_EQ (process (fx, buffer), (Log { "stereo 256" })) << "a plain block is one render call";

    buffer = ramp (2, 256);
    juce::MidiBuffer midi;
    midi.addEvent (juce::MidiMessage::controllerEvent (1, 7, 100), 0);
    midi.addEvent (juce::MidiMessage::controllerEvent (1, 10, 1), 100);
    midi.addEvent (juce::MidiMessage::programChange (1, 2), 100);
    midi.addEvent (juce::MidiMessage::programChange (1, 4), 200);
    midi.addEvent (juce::MidiMessage::noteOn (1, 60, 0.5f), 220);
    EXPECT_EQ (process (fx, buffer, midi), (Log { "cc 7", "stereo 100", "cc 10", "program 2", "stereo 100", "stereo 20", "stereo 36" }))
        << "an event at 0 comes before any audio with no empty render; program 4 is beyond the presets; "
           "every event splits the block, a note too, though nothing handles it";

    for (int i = 0; i < 256; ++i)
    {
        ASSERT_EQ (buffer.getSample (0, i), 2.0f * (float) (i + 1)) << "every sample rendered exactly once";
        ASSERT_EQ (buffer.getSample (1, i), -3.0f * (float) (i + 1));
    }
}

TEST (ProcessingFrame, MonoLayoutsUseTheMonoRenderAndClearSpareOutputs)
{
    TestEffect fx;
    fx.setPlayConfigDetails (1, 2, 48000.0, 64);
    fx.prepareToPlay (48000.0, 64);
    auto buffer = ramp (2, 64);
    EXPECT_EQ (process (fx, buffer), (Log { "mono 64" }));
    EXPECT_EQ (buffer.getSample (0, 10), 22.0f);
    EXPECT_EQ (buffer.getMagnitude (1, 0, 64), 0.0f);

    fx.setPlayConfigDetails (1, 1, 48000.0, 64);
    auto mono = ramp (1, 64);
    EXPECT_EQ (process (fx, mono), (Log { "mono 64" }));
}

TEST (ProcessingFrame, WithoutCoreOrWhileSuspendedAudioPassesThroughAndNoLatencyIsReported)
{
    TestEffect bare (false);
    bare.prepareToPlay (44100.0, 128);
    auto buffer = ramp (2, 128);
    const auto original = buffer;
    juce::MidiBuffer midi;
    midi.addEvent (juce::MidiMessage::controllerEvent (1, 1, 1), 64);
    EXPECT_EQ (process (bare, buffer, midi), (Log { "cc 1" }));
    for (int c = 0; c < 2; ++c)
        for (int i = 0; i < 128; ++i)
            ASSERT_EQ (buffer.getSample (c, i), original.getSample (c, i));

    EXPECT_EQ (bare.getLatencySamples(), 0) << "the latency is the core's";

    TestEffect fx;
    EXPECT_EQ (fx.getLatencySamples(), 32);
    fx.prepareToPlay (44100.0, 128);
    fx.suspendProcessing (true);
    EXPECT_EQ (process (fx, buffer, midi), (Log { "cc 1" }));
    EXPECT_EQ (buffer.getSample (1, 127), original.getSample (1, 127));
}

TEST (ProcessingFrame, ClockTicksSplitTheBlockWhileTheTransportRuns)
{
    struct PlayingHead : juce::AudioPlayHead
    {
        juce::Optional<PositionInfo> getPosition() const override
        {
            PositionInfo info;
            info.setBpm (120.0);
            info.setPpqPosition (0.99);
            info.setIsPlaying (true);
            return info;
        }
    } head;

    TestEffect fx;
    fx.setPlayHead (&head);
    fx.prepareToPlay (48000.0, 1024);
    auto buffer = ramp (2, 1024);

    // At 120 bpm a beat is 24000 samples; 0.01 beat (240 samples) before one,
    // the tick falls while advancing sample 239.
    EXPECT_EQ (process (fx, buffer), (Log { "stereo 239", "stereo 785" }));
}

// A host may reset on its audio thread while a prepare holds the processing
// lock elsewhere: the call returns at once, and the core forgets the signal
// before the next piece it renders.
TEST (ProcessingFrame, ResetNeverWaitsAndTakesEffectBeforeTheNextRender)
{
    TestEffect fx;
    fx.prepareToPlay (48000.0, 64);
    fx.log.clear();
    fx.reset();
    EXPECT_EQ (fx.log, (Log { "reset" })) << "with the lock free, at once";

    std::promise<void> held, release;
    std::thread preparing ([&]
    {
        const juce::ScopedLock sl (fx.getProcessingLock());
        held.set_value();
        release.get_future().wait();
    });
    held.get_future().wait();

    fx.log.clear();
    auto resetting = std::async (std::launch::async, [&] { fx.reset(); });
    const auto waited = resetting.wait_for (std::chrono::seconds (2)) == std::future_status::timeout;
    EXPECT_TRUE (fx.log.empty()) << "not while the lock is held";
    release.set_value();
    preparing.join();
    resetting.wait();
    EXPECT_FALSE (waited) << "reset waited for the processing lock";

    auto buffer = ramp (2, 64);
    EXPECT_EQ (process (fx, buffer), (Log { "reset", "stereo 64" }));
    EXPECT_EQ (process (fx, buffer), (Log { "stereo 64" })) << "once";
}

TEST (EffectBase, ParameterChangesReachTheCoreAndQualityTakesItsSteps)
{
    TestEffect fx;
    auto& core = *fx.recordingCore;
    ASSERT_EQ (core.quality, 0);
    core.parameters.clear();

    fx.getPluginParameter (3)->setNormalisedValue (0.8f, ChangeOrigin::editor);
    ASSERT_EQ (core.parameters.size(), 1u);
    EXPECT_EQ (core.parameters[0], (std::pair<uint32_t, float> { 3, 0.8f }));

    auto* quality = fx.getParameterManager().findParameter ("Quality");
    const struct { float value; int step; } steps[] = { { 0.5f, 2 }, { 0.16f, 0 }, { 0.17f, 1 }, { 1.0f, 3 } };

    for (const auto& s : steps)
    {
        quality->setNormalisedValue (s.value, ChangeOrigin::editor);
        EXPECT_EQ (core.quality, s.step) << s.value;
        EXPECT_EQ (fx.getCurrentQualityStep(), s.step);
    }

    EXPECT_EQ (core.parameters.size(), 1u) << "quality reaches the core as a step, not as a parameter";
}
