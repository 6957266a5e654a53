#pragma once

#include <juce_audio_formats/juce_audio_formats.h>

#include <memory>

// The audio file formats the renderer reads (WAV and AIFF, and on Linux
// FLAC and Ogg Vorbis) and writes (WAV, AIFF and
// FLAC where built, 24-bit stereo). Every failure throws with a message that
// names the file.
class AudioFiles
{
public:
    static constexpr int outputBits = 24;

    AudioFiles();

    // Every format this build reads, in the order the help names them.
    static void registerFormats (juce::AudioFormatManager& manager);

    // "WAV, AIFF, FLAC or Ogg Vorbis", as far as this build reads them.
    juce::String inputFormatNames() const;

    // ".wav, .aif, .aiff or .flac", as far as this build writes them.
    juce::String outputExtensions() const;

    // A reader for a mono or stereo file; throws a RenderError otherwise.
    std::unique_ptr<juce::AudioFormatReader> openInput (const juce::File& file);

    // The format named by the file's extension; throws a UsageError for any
    // other extension.
    juce::AudioFormat& formatForOutput (const juce::File& file);

    // A stereo writer onto the stream, which it takes over.
    std::unique_ptr<juce::AudioFormatWriter> createWriter (const juce::File& target,
                                                           std::unique_ptr<juce::FileOutputStream> stream,
                                                           double sampleRate);

    // Writes a whole buffer through a SafeOutputFile.
    void write (const juce::AudioBuffer<float>& audio, double sampleRate, const juce::File& target, bool replaceExisting);

private:
    juce::AudioFormatManager formats;
};
