#include "AudioFiles.h"

#if QUORLANE_COMPRESSED_AUDIO_FORMATS
 #include "CompressedAudioFormats.h"
#endif
#include "RenderErrors.h"
#include "SafeOutputFile.h"

namespace
{
    // The extensions the renderer writes, where this build has the format.
    const char* const writableExtensions[] = { ".wav", ".aif", ".aiff", ".flac" };

    juce::String joinedWithOr (const juce::StringArray& items)
    {
        if (items.size() < 2)
            return items.joinIntoString ({});

        return items.joinIntoString (", ", 0, items.size() - 1) + " or " + items[items.size() - 1];
    }

    [[noreturn]] void failToRead (const juce::File& file, const juce::String& problem)
    {
        throw RenderError (("cannot read " + file.getFullPathName() + ": " + problem).toStdString());
    }
}

AudioFiles::AudioFiles()
{
    registerFormats (formats);
}

void AudioFiles::registerFormats (juce::AudioFormatManager& manager)
{
    manager.registerBasicFormats();
#if QUORLANE_COMPRESSED_AUDIO_FORMATS
    addCompressedAudioFormats (manager);
#endif
}

juce::String AudioFiles::inputFormatNames() const
{
    juce::StringArray names;

    for (const auto* format : formats)
        names.add (format->getFormatName().upToLastOccurrenceOf (" file", false, false).replaceCharacter ('-', ' '));

    return joinedWithOr (names);
}

juce::String AudioFiles::outputExtensions() const
{
    juce::StringArray extensions;

    for (const auto* extension : writableExtensions)
        if (formats.findFormatForFileExtension (extension) != nullptr)
            extensions.add (extension);

    return joinedWithOr (extensions);
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
        failToRead (file, "not a " + inputFormatNames() + " file that can be decoded");

    if (reader->numChannels < 1 || reader->numChannels > 2)
        failToRead (file, juce::String (reader->numChannels) + " channels; only mono and stereo files can be rendered");

    if (reader->sampleRate < 8000.0 || reader->sampleRate > 384000.0)
        failToRead (file, "unsupported sample rate " + juce::String (reader->sampleRate) + " Hz");

    return reader;
}

juce::AudioFormat& AudioFiles::formatForOutput (const juce::File& file)
{
    for (const auto* extension : writableExtensions)
        if (file.hasFileExtension (extension))
            if (auto* format = formats.findFormatForFileExtension (extension))
                return *format;

    throw UsageError (("cannot write " + file.getFullPathName() + ": the name must end in "
                       + outputExtensions()).toStdString());
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
