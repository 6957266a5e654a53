#include "FileRenderer.h"

#include "AudioFiles.h"
#include "PluginRender.h"
#include "RenderErrors.h"
#include "SafeOutputFile.h"
#include "TerminalProgress.h"
#include "engine/Quorlane.h"

#include <condition_variable>
#include <thread>

namespace
{
    constexpr double autoTailLimitSeconds = 60.0;

    juce::String describeResult (const FileRender& render, const RenderSummary& summary, double sampleRate,
                                 const TailLength& tail)
    {
        juce::String text;
        text << "wrote " << render.output.getFullPathName() << " (" << juce::String (sampleRate, 0) << " Hz, "
             << juce::String ((double) summary.numSamples / sampleRate, 2) << " s, peak "
             << juce::String (juce::Decibels::gainToDecibels (summary.peak, -120.0f), 1) << " dBFS)";

        if (summary.peak > 1.0f)
            text << "; clipped: lower Output Volume or Wet Gain";

        if (summary.nonFiniteInputSamples > 0)
            text << "; the input held " << juce::String (summary.nonFiniteInputSamples)
                 << " samples that were NaN or infinite, rendered as silence";

        if (summary.tailCutShort)
            text << "; the tail was still sounding after " << juce::String (tail.seconds, 0)
                 << " s and was cut there (--tail SECONDS renders a longer one)";

        return text;
    }

    juce::String renderFile (const FileRender& render, const RenderOptions& options, std::atomic<juce::int64>& done)
    {
        AudioFiles files;
        auto reader = files.openInput (render.input);
        const double sampleRate = reader->sampleRate;

        SafeOutputFile output (render.output, options.replaceExisting);
        auto writer = files.createWriter (render.output, output.openStream(), sampleRate);

        Quorlane plugin;
        applySettings (plugin, options.plugin);

        juce::int64 position = 0;
        auto source = [&reader, &position] (juce::AudioBuffer<float>& block)
        {
            const int count = (int) juce::jmin<juce::int64> (block.getNumSamples(), reader->lengthInSamples - position);

            if (count <= 0)
                return 0;

            // A mono file is read into both channels.
            reader->read (&block, 0, count, position, true, true);
            position += count;
            return count;
        };

        auto sink = [&writer, &render] (const juce::AudioBuffer<float>& block, int start, int count)
        {
            if (! writer->writeFromAudioSampleBuffer (block, start, count))
                throw RenderError (("cannot write " + render.output.getFullPathName() + ": write failed (disk full?)").toStdString());
        };

        const auto tail = options.tailSeconds.has_value() ? TailLength::fixed (*options.tailSeconds)
                                                          : TailLength::untilSilent (autoTailLimitSeconds);
        const auto summary = renderThroughPlugin (plugin, sampleRate, source, sink, tail, &done);

        writer.reset(); // completes the file's header
        output.commit();
        return describeResult (render, summary, sampleRate, tail);
    }
}

bool renderFiles (const std::vector<FileRender>& renders, const RenderOptions& options)
{
    const int numFiles = (int) renders.size();

    if (numFiles == 0)
        return true;

    const int cores = (int) std::max (1u, std::thread::hardware_concurrency());
    const int numThreads = juce::jlimit (1, numFiles, options.jobs > 0 ? options.jobs : cores);

    std::vector<std::atomic<juce::int64>> done ((size_t) numFiles);
    juce::int64 totalInput = 0;

    for (const auto& render : renders)
        totalInput += render.inputLength;

    TerminalProgress progress;
    std::atomic<int> next { 0 };
    std::atomic<bool> anyFailed { false };
    int finished = 0;
    std::mutex finishedMutex;
    std::condition_variable finishedChanged;

    auto worker = [&]
    {
        for (int i; (i = next++) < numFiles;)
        {
            try
            {
                progress.print (stdout, renderFile (renders[(size_t) i], options, done[(size_t) i]));
            }
            catch (const std::exception& e)
            {
                progress.print (stderr, "quorlane-render: " + juce::String::fromUTF8 (e.what()));
                anyFailed = true;
            }

            {
                const std::lock_guard<std::mutex> lock (finishedMutex);
                ++finished;
            }

            finishedChanged.notify_all();
        }
    };

    std::vector<std::thread> pool;

    for (int i = 0; i < numThreads; ++i)
        pool.emplace_back (worker);

    {
        std::unique_lock<std::mutex> lock (finishedMutex);

        while (finished < numFiles)
        {
            juce::int64 input = 0;

            for (const auto& d : done)
                input += d.load();

            // Tails are not known ahead, so the bar follows the inputs.
            progress.show (totalInput > 0 ? (double) input / (double) totalInput : 0.0,
                           juce::String (finished) + "/" + juce::String (numFiles) + " files");
            finishedChanged.wait_for (lock, std::chrono::milliseconds (100));
        }
    }

    for (auto& thread : pool)
        thread.join();

    return ! anyFailed;
}
