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
}

TEST (ProcessingFrame, SplitsTheBlockOnlyAtMidiEventsSoControlIsSampleAccurate)
{
    ProbeEffect fx (true);
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
    ProbeEffect fx (true);
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

TEST (ProcessingFrame, WhileSuspendedAudioPassesThroughAndMidiIsStillHandled)
{
    ProbeEffect fx (true);
    fx.prepareToPlay (44100.0, 128);
    fx.suspendProcessing (true);
    auto buffer = ramp (2, 128);
    juce::MidiBuffer midi;
    midi.addEvent (juce::MidiMessage::controllerEvent (1, 1, 1), 64);
    EXPECT_EQ (fx.process (buffer, midi), (Log { "cc 1" }));
    EXPECT_EQ (buffer.getSample (1, 127), ramp (2, 128).getSample (1, 127));
}

// A host may reset on its audio thread while a prepare holds the processing
// lock elsewhere: the call returns at once, and the core forgets the signal
// before the next piece it renders.
TEST (ProcessingFrame, ResetNeverWaitsAndTakesEffectBeforeTheNextRender)
{
    ProbeEffect fx (true);
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
