#include "PluginRender.h"
#include "PluginSettings.h"
#include "engine/Quorlane.h"

#include <gtest/gtest.h>

namespace
{
    constexpr double sampleRate = 48000.0;

    struct Rendered
    {
        juce::AudioBuffer<float> audio;
        RenderSummary summary;
    };

    // Streams the input through a fresh plug-in and keeps whatever reaches the sink.
    Rendered render (const juce::AudioBuffer<float>& input, const PluginSettings& settings, const TailLength& tail)
    {
        Quorlane plugin;
        applySettings (plugin, settings);

        int position = 0;
        auto source = [&] (juce::AudioBuffer<float>& block)
        {
            const int count = std::min (block.getNumSamples(), input.getNumSamples() - position);

            for (int channel = 0; channel < 2; ++channel)
                block.copyFrom (channel, 0, input, channel, position, count);

            position += count;
            return count;
        };

        Rendered result;
        result.audio.setSize (2, 0);
        auto sink = [&result] (const juce::AudioBuffer<float>& block, int start, int count)
        {
            const int length = result.audio.getNumSamples();
            result.audio.setSize (2, length + count, true);

            for (int channel = 0; channel < 2; ++channel)
                result.audio.copyFrom (channel, length, block, channel, start, count);
        };

        result.summary = renderThroughPlugin (plugin, sampleRate, source, sink, tail);
        return result;
    }

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

    bool audible (const juce::AudioBuffer<float>& audio, int index)
    {
        return std::abs (audio.getSample (0, index)) >= TailLength::inaudible
            || std::abs (audio.getSample (1, index)) >= TailLength::inaudible;
    }

    const PluginSettings dryOnly { { { "FX", 0.0f } } };
}

TEST (PluginRender, OutputLinesUpWithTheInputSampleForSample)
{
    juce::AudioBuffer<float> input (2, 30000);
    input.clear();
    input.setSample (0, 10007, 0.5f);
    input.setSample (1, 20011, 0.5f);

    const auto result = render (input, dryOnly, TailLength::fixed (0.0));

    ASSERT_EQ (result.audio.getNumSamples(), input.getNumSamples());

    for (int channel = 0; channel < 2; ++channel)
    {
        const float* samples = result.audio.getReadPointer (channel);
        const auto loudest = std::max_element (samples, samples + result.audio.getNumSamples(),
                                               [] (float a, float b) { return std::abs (a) < std::abs (b); });
        EXPECT_EQ (loudest - samples, channel == 0 ? 10007 : 20011);
    }
}

TEST (PluginRender, FixedTailAddsExactlyItsLength)
{
    const auto input = noiseBurst (30001, 4800);

    for (const double seconds : { 0.0, 0.25, 1.5 })
    {
        SCOPED_TRACE (seconds);
        const auto result = render (input, {}, TailLength::fixed (seconds));
        const auto expected = 30001 + (int) std::lround (seconds * sampleRate);

        EXPECT_EQ (result.audio.getNumSamples(), expected);
        EXPECT_EQ (result.summary.numSamples, expected);
        EXPECT_FALSE (result.summary.tailCutShort);
    }
}

TEST (PluginRender, TailUntilSilenceEndsOnTheLastAudibleSample)
{
    const auto input = noiseBurst (24000, 4800);

    const auto wet = render (input, {}, TailLength::untilSilent (30.0));
    const int length = wet.audio.getNumSamples();

    EXPECT_GT (length, input.getNumSamples() + (int) sampleRate / 10);
    EXPECT_LT (length, input.getNumSamples() + (int) (30.0 * sampleRate));
    EXPECT_TRUE (audible (wet.audio, length - 1));
    EXPECT_FALSE (wet.summary.tailCutShort);
    EXPECT_GT (wet.summary.peak, 0.0f);

    // Without reverb there is nothing after the input to keep.
    EXPECT_EQ (render (input, dryOnly, TailLength::untilSilent (30.0)).audio.getNumSamples(), input.getNumSamples());
}

TEST (PluginRender, TailUntilSilenceStopsAtItsLimit)
{
    const auto input = noiseBurst (24000, 4800);
    const PluginSettings endless { { { "Late Feedback", 1.0f }, { "X Fader", 1.0f } } };

    const auto result = render (input, endless, TailLength::untilSilent (1.0));

    EXPECT_EQ (result.audio.getNumSamples(), input.getNumSamples() + (int) sampleRate);
    EXPECT_TRUE (result.summary.tailCutShort);
}

// NaN and infinite input is counted and rendered as silence; the reported
// peak is the true one of what was written.
TEST (PluginRender, NonFiniteInputIsCountedAndThePeakIsTrue)
{
    auto input = noiseBurst (20000, 20000);
    input.setSample (0, 100, std::numeric_limits<float>::quiet_NaN());
    input.setSample (1, 5000, std::numeric_limits<float>::infinity());
    input.setSample (0, 9000, -std::numeric_limits<float>::infinity());

    const auto result = render (input, {}, TailLength::fixed (0.5));
    EXPECT_EQ (result.summary.nonFiniteInputSamples, 3);

    float peak = 0.0f;

    for (int channel = 0; channel < 2; ++channel)
        for (int i = 0; i < result.audio.getNumSamples(); ++i)
        {
            ASSERT_TRUE (std::isfinite (result.audio.getSample (channel, i))) << channel << " " << i;
            peak = std::max (peak, std::abs (result.audio.getSample (channel, i)));
        }

    EXPECT_GT (peak, 0.01f);
    EXPECT_EQ (result.summary.peak, peak);
}
