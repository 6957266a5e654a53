#include "ProbeEffect.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

namespace
{
    using Log = ProbeCore::Log;

    juce::AudioBuffer<float> ramp (int channels, int samples)
    {
        juce::AudioBuffer<float> b (channels, samples);
        for (int c = 0; c < channels; ++c)
            for (int i = 0; i < samples; ++i)
                b.setSample (c, i, (float) (i + 1) * (c == 0 ? 1.0f : -1.0f));
        return b;
    }

    struct Calls { Log calls; };

    // An effect whose core logs its render calls beside the MIDI handled (the
    // log is made before the effect, which may log while it is built).
    struct TestEffect : Calls, ProbeEffect
    {
        explicit TestEffect (bool withCore = true) : ProbeEffect (withCore, &calls) {}

        // One block through the effect: what the core and the effect logged.
        Log process (juce::AudioBuffer<float>& buffer, juce::MidiBuffer midi = {})
        {
            calls.clear();
            processBlock (buffer, midi);
            return calls;
        }
    };
}

TEST (ProcessingFrame, SplitsTheBlockOnlyAtMidiEventsSoControlIsSampleAccurate)
{
    TestEffect fx;
    fx.prepareToPlay (48000.0, 256);
    auto buffer = ramp (2, 256);
    EXPECT_EQ (fx.process (buffer), (Log { "stereo 256" })) << "a plain block is one render call";

    buffer = ramp (2, 256);
    juce::MidiBuffer midi;
    midi.addEvent (juce::MidiMessage::controllerEvent (1, 7, 100), 0);
    midi.addEvent (juce::MidiMessage::controllerEvent (1, 10, 1), 100);
    midi.addEvent (juce::MidiMessage::programChange (1, 2), 100);
    midi.addEvent (juce::MidiMessage::programChange (1, 4), 200);
    midi.addEvent (juce::MidiMessage::noteOn (1, 60, 0.5f), 220);
    EXPECT_EQ (fx.process (buffer, midi), (Log { "cc 7", "stereo 100", "cc 10", "program 2", "stereo 100", "program 4", "stereo 20", "stereo 36" }))
        << "an event at 0 comes before any audio with no empty render; "
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
    EXPECT_EQ (fx.process (buffer), (Log { "mono 64" }));
    EXPECT_EQ (buffer.getSample (0, 10), 22.0f);
    EXPECT_EQ (buffer.getMagnitude (1, 0, 64), 0.0f);

    fx.setPlayConfigDetails (1, 1, 48000.0, 64);
    auto mono = ramp (1, 64);
    EXPECT_EQ (fx.process (mono), (Log { "mono 64" }));
}

TEST (ProcessingFrame, WithoutCoreOrWhileSuspendedAudioPassesThroughAndNoLatencyIsReported)
{
    TestEffect bare (false);
    bare.prepareToPlay (44100.0, 128);
    auto buffer = ramp (2, 128);
    const auto original = buffer;
    juce::MidiBuffer midi;
    midi.addEvent (juce::MidiMessage::controllerEvent (1, 1, 1), 64);
    EXPECT_EQ (bare.process (buffer, midi), (Log { "cc 1" }));
    for (int c = 0; c < 2; ++c)
        for (int i = 0; i < 128; ++i)
            ASSERT_EQ (buffer.getSample (c, i), original.getSample (c, i));

    EXPECT_EQ (bare.getLatencySamples(), 0) << "the latency is the core's";

    TestEffect fx;
    EXPECT_EQ (fx.getLatencySamples(), 32);
    fx.prepareToPlay (44100.0, 128);
    fx.suspendProcessing (true);
    EXPECT_EQ (fx.process (buffer, midi), (Log { "cc 1" }));
    EXPECT_EQ (buffer.getSample (1, 127), original.getSample (1, 127));
}

// A host may reset on its audio thread while a prepare holds the processing
// lock elsewhere: the call returns at once, and the core forgets the signal
// before the next piece it renders.
TEST (ProcessingFrame, ResetNeverWaitsAndTakesEffectBeforeTheNextRender)
{
    TestEffect fx;
    fx.prepareToPlay (48000.0, 64);
    fx.calls.clear();
    fx.reset();
    EXPECT_EQ (fx.calls, (Log { "reset" })) << "with the lock free, at once";

    std::promise<void> held, release;
    std::thread preparing ([&]
    {
        const juce::ScopedLock sl (fx.getProcessingLock());
        held.set_value();
        release.get_future().wait();
    });
    held.get_future().wait();

    fx.calls.clear();
    auto resetting = std::async (std::launch::async, [&] { fx.reset(); });
    const auto waited = resetting.wait_for (std::chrono::seconds (2)) == std::future_status::timeout;
    EXPECT_TRUE (fx.calls.empty()) << "not while the lock is held";
    release.set_value();
    preparing.join();
    resetting.wait();
    EXPECT_FALSE (waited) << "reset waited for the processing lock";

    auto buffer = ramp (2, 64);
    EXPECT_EQ (fx.process (buffer), (Log { "reset", "stereo 64" }));
    EXPECT_EQ (fx.process (buffer), (Log { "stereo 64" })) << "once";
}

TEST (EffectBase, ParameterChangesReachTheCoreAndQualityTakesItsSteps)
{
    TestEffect fx;
    auto& core = *fx.probe;
    ASSERT_EQ (core.runs (3), fx.getPluginParameter (3)->getNormalisedValue());
    ASSERT_EQ (core.quality, 0);

    fx.getPluginParameter (3)->setNormalisedValue (0.8f, ChangeOrigin::editor);
    EXPECT_EQ (core.runs (3), 0.8f);

    auto* quality = fx.getParameterManager().findParameter ("Quality");
    const struct { float value; int step; } steps[] = { { 0.5f, 2 }, { 0.16f, 0 }, { 0.17f, 1 }, { 1.0f, 3 } };

    for (const auto& s : steps)
    {
        quality->setNormalisedValue (s.value, ChangeOrigin::editor);
        EXPECT_EQ (core.runs (quality->getIndex()), 0.0f) << "quality reaches the core as a step, not as a parameter";
        EXPECT_EQ (core.quality, s.step) << s.value;
        EXPECT_EQ (fx.getCurrentQualityStep(), s.step);
    }
}
