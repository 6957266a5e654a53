#include "PluginRender.h"

#include "engine/Quorlane.h"

#include <cmath>
#include <limits>
#include <optional>

namespace
{
    constexpr int blockSize = 512;

    // The largest magnitude of both channels; a NaN or an infinity makes it infinite.
    float truePeak (const juce::AudioBuffer<float>& block, int start, int count)
    {
        float peak = 0.0f;

        for (int channel = 0; channel < 2; ++channel)
            for (const float* x = block.getReadPointer (channel, start), * end = x + count; x != end; ++x)
                peak = std::isfinite (*x) ? std::max (peak, std::abs (*x)) : std::numeric_limits<float>::infinity();

        return peak;
    }

    juce::int64 countNonFinite (const juce::AudioBuffer<float>& block, int count)
    {
        juce::int64 found = 0;

        for (int channel = 0; channel < 2; ++channel)
            for (const float* x = block.getReadPointer (channel), * end = x + count; x != end; ++x)
                found += std::isfinite (*x) ? 0 : 1;

        return found;
    }

    // Everything after the plug-in: drops the latency, passes the span of the
    // input on, and decides where the tail ends. A tail that stops at
    // silence holds back each quiet stretch until something louder follows,
    // so the output ends at its last audible sample.
    class OutputStage
    {
    public:
        OutputStage (const OutputBlockSink& s, int latencySamples, const TailLength& t, double sampleRate)
            : sink (s),
              latency (latencySamples),
              stopsAtSilence (t.stopsAtSilence),
              silenceLevel (t.silenceLevel),
              tailLimit ((juce::int64) std::llround (t.seconds * sampleRate)),
              silenceLength ((int) std::lround (TailLength::silenceSeconds * sampleRate)),
              quiet (2, stopsAtSilence ? silenceLength + blockSize : 0)
        {
        }

        void setInputLength (juce::int64 length) noexcept { inputLength = length; }

        bool isFinished() const noexcept
        {
            return inputLength.has_value() && (silenceReached || time >= *inputLength + tailLimit);
        }

        void take (const juce::AudioBuffer<float>& block, int numSamples)
        {
            int start = (int) juce::jlimit<juce::int64> (0, numSamples, latency - received);
            received += numSamples;

            while (start < numSamples && ! isFinished())
            {
                const int available = numSamples - start;
                int count = 0;

                if (! inputLength.has_value() || time < *inputLength)
                {
                    count = inputLength.has_value() ? (int) std::min<juce::int64> (available, *inputLength - time) : available;
                    emit (block, start, count);
                }
                else
                {
                    count = (int) std::min<juce::int64> (available, *inputLength + tailLimit - time);
                    takeTail (block, start, count);
                }

                start += count;
                time += count;
            }
        }

        RenderSummary finish()
        {
            if (! silenceReached)
                emitQuiet();

            summary.tailCutShort = stopsAtSilence && ! silenceReached;
            return summary;
        }

    private:
        void takeTail (const juce::AudioBuffer<float>& block, int start, int count)
        {
            if (! stopsAtSilence)
            {
                emit (block, start, count);
                return;
            }

            const int loud = lastAudibleSample (block, start, count, silenceLevel);

            if (loud >= 0)
            {
                emitQuiet();
                emit (block, start, loud + 1);
            }

            hold (block, start + loud + 1, count - loud - 1);
            silenceReached = quietLength >= silenceLength;
        }

        static int lastAudibleSample (const juce::AudioBuffer<float>& block, int start, int count, float level)
        {
            const float* left = block.getReadPointer (0, start);
            const float* right = block.getReadPointer (1, start);

            for (int i = count; --i >= 0;)
                if (std::abs (left[i]) >= level || std::abs (right[i]) >= level)
                    return i;

            return -1;
        }

        void hold (const juce::AudioBuffer<float>& block, int start, int count)
        {
            for (int channel = 0; channel < 2; ++channel)
                quiet.copyFrom (channel, quietLength, block, channel, start, count);

            quietLength += count;
        }

        void emitQuiet()
        {
            emit (quiet, 0, quietLength);
            quietLength = 0;
        }

        void emit (const juce::AudioBuffer<float>& block, int start, int count)
        {
            if (count <= 0)
                return;

            sink (block, start, count);
            summary.numSamples += count;
            summary.peak = std::max (summary.peak, truePeak (block, start, count));
        }

        const OutputBlockSink& sink;
        const int latency;
        const bool stopsAtSilence;
        const float silenceLevel;
        const juce::int64 tailLimit;
        const int silenceLength;

        juce::AudioBuffer<float> quiet;
        int quietLength = 0;
        bool silenceReached = false;

        juce::int64 received = 0; // samples out of the plug-in, latency included
        juce::int64 time = 0;      // samples taken after the latency, held ones included
        std::optional<juce::int64> inputLength;
        RenderSummary summary;
    };
}

RenderSummary renderThroughPlugin (Quorlane& plugin, double sampleRate,
                                   const InputBlockSource& source, const OutputBlockSink& sink,
                                   const TailLength& tail, std::atomic<juce::int64>* inputSamplesDone)
{
    plugin.setNonRealtime (true);
    plugin.setRateAndBufferSizeDetails (sampleRate, blockSize);
    plugin.prepareToPlay (sampleRate, blockSize);

    OutputStage output (sink, plugin.getLatencySamples(), tail, sampleRate);
    juce::AudioBuffer<float> block (2, blockSize);
    juce::MidiBuffer noMidi;
    juce::int64 inputLength = 0, nonFiniteInput = 0;
    bool inputEnded = false;

    while (! output.isFinished())
    {
        int filled = 0;

        if (! inputEnded)
        {
            filled = juce::jlimit (0, blockSize, source (block));
            inputLength += filled;
            nonFiniteInput += countNonFinite (block, filled);

            if (inputSamplesDone != nullptr)
                inputSamplesDone->store (inputLength);

            if (filled < blockSize)
            {
                inputEnded = true;
                output.setInputLength (inputLength);
            }
        }

        for (int channel = 0; channel < 2; ++channel)
            block.clear (channel, filled, blockSize - filled);

        plugin.processBlock (block, noMidi);
        output.take (block, blockSize);
    }

    plugin.releaseResources();
    auto summary = output.finish();
    summary.nonFiniteInputSamples = nonFiniteInput;
    return summary;
}
