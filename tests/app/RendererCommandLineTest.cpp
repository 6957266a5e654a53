#include "AudioFiles.h"
#include "DecayPlot.h"
#include "ImpulseResponse.h"

#include <juce_audio_formats/juce_audio_formats.h>
#include <juce_graphics/juce_graphics.h>

#include <gtest/gtest.h>

// quorlane-render run as a user runs it, on files in a scratch folder.
namespace
{
    struct ProcessResult
    {
        int exitCode = -1;
        juce::String output; // stdout and stderr together
    };

    class RendererCommandLine : public testing::Test
    {
    protected:
        void SetUp() override { ASSERT_TRUE (folder.createDirectory()); }
        void TearDown() override { folder.deleteRecursively(); }

        static ProcessResult run (const juce::StringArray& arguments)
        {
            juce::StringArray command { QUORLANE_RENDER_PATH };
            command.addArray (arguments);
            juce::ChildProcess process;

            if (! process.start (command, juce::ChildProcess::wantStdOut | juce::ChildProcess::wantStdErr))
                return {};

            // On Windows the reader may give up between the last write and the exit:
            // once the process has finished, all it wrote is in the pipe.
            auto output = process.readAllProcessOutput();
            process.waitForProcessToFinish (60000);
            output += process.readAllProcessOutput();

            // Windows' C runtime ends lines with CR LF.
            return { (int) process.getExitCode(), output.replace ("\r\n", "\n") };
        }

        juce::File file (const juce::String& name) const { return folder.getChildFile (name); }
        juce::String path (const juce::String& name) const { return file (name).getFullPathName(); }

        // A short tone burst followed by silence, as 24-bit WAV; its path.
        juce::String writeInput (const juce::String& name, double sampleRate, int channels, int length)
        {
            juce::AudioBuffer<float> audio (channels, length);
            audio.clear();

            for (int channel = 0; channel < channels; ++channel)
                for (int i = 0; i < length / 4; ++i)
                    audio.setSample (channel, i, 0.4f * (float) std::sin (i * 0.05));

            std::unique_ptr<juce::AudioFormatWriter> (juce::WavAudioFormat().createWriterFor (
                new juce::FileOutputStream (file (name)), sampleRate, (unsigned) channels, 24, {}, 0))
                ->writeFromAudioSampleBuffer (audio, 0, length);
            return path (name);
        }

        static std::unique_ptr<juce::AudioFormatReader> read (const juce::File& f)
        {
            juce::AudioFormatManager formats;
            AudioFiles::registerFormats (formats);
            return std::unique_ptr<juce::AudioFormatReader> (formats.createReaderFor (f));
        }

        // Anything left behind in the folder besides the named files, hidden ones too.
        juce::StringArray strayFiles (const juce::StringArray& expected) const
        {
            juce::StringArray stray;
            for (const auto& f : folder.findChildFiles (juce::File::findFilesAndDirectories, false, "*"))
                if (! expected.contains (f.getFileName()))
                    stray.add (f.getFileName());
            return stray;
        }

        // Spaces, accents and CJK characters, as in many user folders.
        const juce::File folder = juce::File::getSpecialLocation (juce::File::tempDirectory)
            .getNonexistentChildFile (juce::CharPointer_UTF8 ("quorlane render Mus\xc3\xafque \xe9\x9f\xb3\xe6\xa5\xbd"), {}, false);
    };
}

// Builds differ in the formats they have (no FLAC on Windows): the help and
// the error for any other name list exactly those this build writes. Each
// keeps the input's rate and length (no tail asked for), in stereo; all are
// read back as inputs of one run into a folder, Ogg Vorbis from elsewhere too
// where FLAC is written, the tail counted at their rate, quality in any case.
TEST_F (RendererCommandLine, WritesAndReadsExactlyTheFormatsItsHelpNames)
{
    const auto help = run ({ "--help" });
    ASSERT_EQ (help.exitCode, 0);
    const auto outputsLine = help.output.fromFirstOccurrenceOf ("  Outputs", false, false).upToFirstOccurrenceOf (":", false, false);
    juce::StringArray extensions;

    for (auto token : juce::StringArray::fromTokens (outputsLine.replace (",", " "), false))
        if (token.startsWithChar ('.'))
            extensions.add (token);

    ASSERT_TRUE (extensions.contains (".wav") && extensions.contains (".aiff")) << help.output;
    const auto input = writeInput ("in.wav", 96000.0, 1, 4800);
    juce::StringArray inputs;
#if ! JUCE_WINDOWS
    // The codecs are the renderer's own, linked in on Linux.
    EXPECT_TRUE (extensions.contains (".flac")) << help.output;
    EXPECT_TRUE (help.output.contains ("FLAC or Ogg Vorbis")) << help.output;

    juce::AudioFormatManager formats;
    AudioFiles::registerFormats (formats);
    {
        const std::unique_ptr<juce::AudioFormatReader> source (formats.createReaderFor (juce::File (input)));
        std::unique_ptr<juce::AudioFormatWriter> writer (formats.findFormatForFileExtension (".ogg")->createWriterFor (
            new juce::FileOutputStream (file ("in.ogg")), 96000.0, 1, 16, {}, 5));
        ASSERT_NE (writer, nullptr);
        ASSERT_TRUE (writer->writeFromAudioReader (*source, 0, -1));
    }
    inputs.add (path ("in.ogg"));
#endif

    for (const auto& extension : extensions)
    {
        const auto result = run ({ input, "-o", path ("out" + extension), "--tail", "0" });
        EXPECT_EQ (result.exitCode, 0) << extension << ": " << result.output;
        const auto reader = read (file ("out" + extension));
        ASSERT_NE (reader, nullptr) << extension;
        EXPECT_EQ (reader->sampleRate, 96000.0) << extension;
        EXPECT_EQ (reader->numChannels, 2u) << extension;
        inputs.add (path ("out" + extension));
    }

    juce::StringArray arguments { "-o", path ("wet"), "--tail", "0.1", "--quality", "Medium" };
    arguments.addArray (inputs);
    const auto again = run (arguments);
    EXPECT_EQ (again.exitCode, 0) << again.output;

    for (const auto& name : inputs)
    {
        const auto reader = read (file ("wet").getChildFile (juce::File (name).getFileName().replace (".ogg", ".wav")));
        ASSERT_NE (reader, nullptr) << name;
        EXPECT_EQ (reader->lengthInSamples, 4800 + 9600) << name;
    }

    const auto refused = run ({ input, "-o", path ("out.ogg") });
    EXPECT_EQ (refused.exitCode, 2);
    EXPECT_TRUE (refused.output.contains ("must end in " + extensions.joinIntoString (", ", 0, extensions.size() - 1)
                                          + " or " + extensions[extensions.size() - 1]))
        << refused.output;
}

// Exit status 1 for a file that cannot be read or written (two inputs of one
// name cannot share a folder), 2 for a malformed command line; either way the message names the problem and nothing is written.
TEST_F (RendererCommandLine, RefusalsNameTheProblemAndWriteNothing)
{
    const auto input = writeInput ("in.wav", 48000.0, 2, 4800);
    const auto existing = file ("out.wav");
    ASSERT_TRUE (existing.replaceWithText ("precious"));
    ASSERT_TRUE (file ("text.wav").replaceWithText ("not audio"));
    ASSERT_TRUE (file ("other.qlprs").replaceWithText ("<Preset application='Otherverb' name='X'/>"));
    ASSERT_TRUE (file ("other").createDirectory());
    writeInput ("other/in.wav", 48000.0, 1, 4800);

    const struct { juce::StringArray arguments; int exitCode; juce::StringArray said; } cases[] = {
        { { input, path ("missing.wav"), "-o", path ("wet") }, 1, { path ("missing.wav") } },
        { { input, path ("text.wav"), "-o", path ("wet") }, 1, { path ("text.wav") } },
        { { input, "-o", existing.getFullPathName() }, 1, { "already exists", "--force" } },
        { { input, "-o", input, "--force" }, 1, { "one of the inputs" } },
        { { input, path ("other/in.wav"), "-o", path ("wet") }, 1, { "two outputs" } },
        { { "--preset", path ("other.qlprs"), "--list-parameters" }, 1, { path ("other.qlprs") } },
        { { "--preset", path ("missing.qlprs"), "--list-parameters" }, 1, { path ("missing.qlprs") } },
        { { "--preset", "Concert hal", "--list-parameters" }, 2,
          { "unknown preset \"Concert hal\". Close names:\n  Concert hall [d/w]\n  Concert hall\n" } },
        { { "--set", "Late Sise=0.5", input }, 2, { "Late Sise", "Late Size", "--help" } },
        { { "--set", "Late Size=1.5", input }, 2, { "--help" } },
        { { "--set", "Late Size", input }, 2, { "--help" } },
        { { "--set", "Late Size=big", input }, 2, { "--help" } },
        { { "--tail", "-1", input }, 2, { "--help" } },
        { { "--quality", "ultra", input }, 2, { "--help" } },
        { { "-o", path ("out.mp3"), input }, 2, { "--help" } },
    };

    for (const auto& c : cases)
    {
        SCOPED_TRACE (c.arguments.joinIntoString (" "));
        const auto result = run (c.arguments);
        EXPECT_EQ (result.exitCode, c.exitCode) << result.output;

        for (const auto& text : c.said)
            EXPECT_TRUE (result.output.contains (text)) << text << "\n" << result.output;
    }

    const juce::StringArray setUp { "in.wav", "out.wav", "text.wav", "other.qlprs", "other" };
    EXPECT_EQ (strayFiles (setUp), juce::StringArray());
    EXPECT_EQ (existing.loadFileAsString(), "precious");
    EXPECT_NE (read (file ("in.wav")), nullptr);

    const auto forced = run ({ input, "-o", existing.getFullPathName(), "--force" });
    EXPECT_EQ (forced.exitCode, 0) << forced.output;
    EXPECT_NE (read (existing), nullptr);
    EXPECT_EQ (strayFiles (setUp), juce::StringArray());
}

TEST_F (RendererCommandLine, PresetsComeFromTheFactoryBankByNameOrFromAFile)
{
    const auto listed = run ({ "--list-presets" });
    ASSERT_EQ (listed.exitCode, 0) << listed.output;
    EXPECT_TRUE (listed.output.contains ("Dry/Wet\n    1  Cristal Cave [d/w]\n")) << listed.output;
    EXPECT_TRUE (listed.output.contains ("Wet\n   24  Mutiny on Bounty\n")) << listed.output;
    EXPECT_TRUE (listed.output.contains ("   47  Big Tunnel\n")) << listed.output;
    EXPECT_FALSE (listed.output.contains ("Preset 48")) << "the unused slots are not presets";

    // "INPUT OUTPUT", a name in any case, and the same render either way.
    const auto input = writeInput ("in.wav", 48000.0, 2, 4800);

    const auto hall = run ({ "--preset", "Concert hall", input, path ("hall.wav"), "--tail", "0.5" });
    ASSERT_EQ (hall.exitCode, 0) << hall.output;
    const auto upper = run ({ "--preset=CONCERT HALL", input, "-o", path ("upper.wav"), "--tail", "0.5" });
    ASSERT_EQ (upper.exitCode, 0) << upper.output;
    const auto plain = run ({ input, "-o", path ("plain.wav"), "--tail", "0.5" });
    ASSERT_EQ (plain.exitCode, 0) << plain.output;

    const auto bytes = [this] (const char* name) { juce::MemoryBlock b; file (name).loadFileAsData (b); return b; };
    EXPECT_EQ (bytes ("hall.wav"), bytes ("upper.wav"));
    EXPECT_NE (bytes ("hall.wav"), bytes ("plain.wav"));

    // A preset file: its values, then --set on top, the rest at the defaults.
    ASSERT_TRUE (file ("mine.qlprs").replaceWithText ("<Preset application='Quorlane' name='Mine'>"
                                                      "<param name='Late Size' value='0.125'/></Preset>"));
    const auto fromFile = run ({ "--preset", path ("mine.qlprs"), "--set", "FX=0.75", "--list-parameters" });
    ASSERT_EQ (fromFile.exitCode, 0) << fromFile.output;
    for (const auto& [name, value] : { std::pair { "Late Size", " 0.125" }, { "FX", " 0.750" }, { "Early Size", " 0.500" } })
        EXPECT_TRUE (fromFile.output.contains (juce::String (name).paddedRight (' ', 20) + value)) << name << "\n" << fromFile.output;
}

TEST_F (RendererCommandLine, ImpulseResponseDecayPlotAndDemoPhraseAreWritten)
{
    const auto result = run ({ "--ir", path ("ir.wav"), "--plot", path ("decay.png"), "--set", "FX=1", "--rate", "44100" });
    ASSERT_EQ (result.exitCode, 0) << result.output;

    for (const char* label : { "EDT", "T20", "T30", "Left", "Right", "Decay Time estimate" })
        EXPECT_TRUE (result.output.contains (label)) << label << "\n" << result.output;

    const auto reader = read (file ("ir.wav"));
    ASSERT_NE (reader, nullptr);
    EXPECT_EQ (reader->sampleRate, 44100.0);
    EXPECT_GT (reader->lengthInSamples, 4410);

    // The plot as drawn here, every pixel through the PNG file.
    const auto plot = juce::ImageFileFormat::loadFrom (file ("decay.png"));
    const auto drawn = drawDecayPlot (ImpulseResponse::render (PluginSettings { { { "FX", 1.0f } } }, 44100.0));
    ASSERT_EQ (plot.getBounds(), drawn.getBounds());
    EXPECT_GT (plot.getWidth(), plot.getHeight());
    int differing = 0;
    for (int y = 0; y < plot.getHeight(); ++y)
        for (int x = 0; x < plot.getWidth(); ++x)
            differing += plot.getPixelAt (x, y) != drawn.getPixelAt (x, y) ? 1 : 0;
    EXPECT_EQ (differing, 0);

    const auto demo = run ({ "--make-demo-phrase", path ("dry.wav") });
    ASSERT_EQ (demo.exitCode, 0) << demo.output;
    const auto phrase = read (file ("dry.wav"));
    ASSERT_NE (phrase, nullptr);
    EXPECT_EQ (phrase->sampleRate, 48000.0);
    EXPECT_EQ (phrase->numChannels, 2u);
    EXPECT_GE (phrase->lengthInSamples, 2 * 48000);
    EXPECT_LE (phrase->lengthInSamples, 10 * 48000);
    juce::Range<float> levels[2];
    phrase->readMaxLevels (0, phrase->lengthInSamples, levels, 2);
    EXPECT_GT (levels[0].getEnd(), 0.1f);
    EXPECT_GT (levels[1].getEnd(), 0.1f);
}
