#include "tests/support/BufferRender.h"

#include <gtest/gtest.h>

namespace
{
    constexpr double sampleRate = 48000.0;

    juce::AudioBuffer<float> noiseBurst (int length, int burstLength)
    {
        juce::AudioBuffer<float> audio (2, length);
        audio.clear();
        juce::Random random (7);

        for (int channel = 0; channel < 2; ++channel)
            for (int i = 0; i < burstLength; ++i)
                audio.setSample (channel, i, random.nextFloat() - 0.5f);

        return audio;
    }

    const PluginSettings dryOnly { { { "FX", 0.0f } } };
}

// Without reverb the output lines up with the input sample for sample and
// nothing after the input is kept. A tail until silence ends on the last
// audible sample, or at its limit. (A fixed tail adds exactly its length:
// checked on the renderer's files.)
TEST (PluginRender, OutputLinesUpAndATailUntilSilenceEndsOnTheLastAudibleSampleOrAtItsLimit)
{
    const auto input = noiseBurst (24000, 4800);
    auto marked = input;
    marked.setSample (0, 10007, 0.9f);
    marked.setSample (1, 20011, 0.9f);

    const auto dry = renderBuffer (marked, dryOnly, TailLength::untilSilent (30.0), sampleRate);
    ASSERT_EQ (dry.audio.getNumSamples(), input.getNumSamples());

    for (int channel = 0; channel < 2; ++channel)
    {
        const float* samples = dry.audio.getReadPointer (channel);
        const auto loudest = std::max_element (samples, samples + dry.audio.getNumSamples(),
                                               [] (float a, float b) { return std::abs (a) < std::abs (b); });
        EXPECT_EQ (loudest - samples, channel == 0 ? 10007 : 20011);
    }

    const auto wet = renderBuffer (input, {}, TailLength::untilSilent (30.0), sampleRate);
    const int length = wet.audio.getNumSamples();

    EXPECT_GT (length, input.getNumSamples() + (int) sampleRate / 10);
    EXPECT_LT (length, input.getNumSamples() + (int) (30.0 * sampleRate));
    EXPECT_GE (wet.audio.getMagnitude (length - 1, 1), TailLength::inaudible) << "ends on an audible sample";
    EXPECT_FALSE (wet.summary.tailCutShort);

    const PluginSettings endless { { { "Late Feedback", 1.0f }, { "X Fader", 1.0f } } };
    const auto cut = renderBuffer (input, endless, TailLength::untilSilent (1.0), sampleRate);
    EXPECT_EQ (cut.audio.getNumSamples(), input.getNumSamples() + (int) sampleRate);
    EXPECT_TRUE (cut.summary.tailCutShort);
}

// NaN and infinite input is counted and rendered as silence; the reported
// peak is the true one of what was written.
TEST (PluginRender, NonFiniteInputIsCountedAndThePeakIsTrue)
{
    auto input = noiseBurst (20000, 20000);
    input.setSample (0, 100, std::numeric_limits<float>::quiet_NaN());
    input.setSample (1, 5000, std::numeric_limits<float>::infinity());
    input.setSample (0, 9000, -std::numeric_limits<float>::infinity());

    const auto result = renderBuffer (input, {}, TailLength::fixed (0.5), sampleRate);
    EXPECT_EQ (result.summary.nonFiniteInputSamples, 3);

    // The reported peak is infinite when any sample written is not finite.
    EXPECT_TRUE (std::isfinite (result.summary.peak));
    const float peak = result.audio.getMagnitude (0, result.audio.getNumSamples());
    EXPECT_GT (peak, 0.01f);
    EXPECT_EQ (result.summary.peak, peak);
}
