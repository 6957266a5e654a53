#include "AudioFiles.h"

#include "RenderErrors.h"
#include "SafeOutputFile.h"

namespace
{
    [[noreturn]] void failToRead (const juce::File& file, const juce::String& problem)
    {
        throw RenderError (("cannot read " + file.getFullPathName() + ": " + problem).toStdString());
    }
}

AudioFiles::AudioFiles()
{
    formats.registerBasicFormats();
}

std::unique_ptr<juce::AudioFormatReader> AudioFiles::openInput (const juce::File& file)
{
    if (file.isDirectory())
        failToRead (file, "it is a folder");

    if (! file.existsAsFile())
        failToRead (file, "no such file");

    if (! file.hasReadAccess())
        failToRead (file, "permission denied");

    std::unique_ptr<juce::AudioFormatReader> reader (formats.createReaderFor (file));

    if (reader == nullptr)
        failToRead (file, "not a WAV, FLAC, AIFF or Ogg Vorbis file that can be decoded");

    if (reader->numChannels < 1 || reader->numChannels > 2)
        failToRead (file, juce::String (reader->numChannels) + " channels; only mono and stereo files can be rendered");

    if (reader->sampleRate < 8000.0 || reader->sampleRate > 384000.0)
        failToRead (file, "unsupported sample rate " + juce::String (reader->sampleRate) + " Hz");

    return reader;
}

juce::AudioFormat& AudioFiles::formatForOutput (const juce::File& file)
{
    if (file.hasFileExtension ("wav;flac;aif;aiff"))
        if (auto* format = formats.findFormatForFileExtension (file.getFileExtension()))
            return *format;

    throw UsageError (("cannot write " + file.getFullPathName()
                       + ": the name must end in .wav, .flac, .aif or .aiff").toStdString());
}

std::unique_ptr<juce::AudioFormatWriter> AudioFiles::createWriter (const juce::File& target,
                                                                   std::unique_ptr<juce::FileOutputStream> stream,
                                                                   double sampleRate)
{
    auto& format = formatForOutput (target);
    std::unique_ptr<juce::AudioFormatWriter> writer (format.createWriterFor (stream.get(), sampleRate, 2, outputBits, {}, 0));

    if (writer == nullptr)
        throw RenderError (("cannot write " + target.getFullPathName() + ": " + format.getFormatName()
                            + " does not support " + juce::String (sampleRate) + " Hz").toStdString());

    stream.release(); // the writer owns it now
    return writer;
}

void AudioFiles::write (const juce::AudioBuffer<float>& audio, double sampleRate, const juce::File& target, bool replaceExisting)
{
    SafeOutputFile output (target, replaceExisting);

    {
        auto writer = createWriter (target, output.openStream(), sampleRate);

        if (! writer->writeFromAudioSampleBuffer (audio, 0, audio.getNumSamples()))
            throw RenderError (("cannot write " + target.getFullPathName() + ": write failed (disk full?)").toStdString());
    }

    output.commit();
}
