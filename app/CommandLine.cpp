#include "CommandLine.h"

#include "RenderErrors.h"
#include "engine/Quorlane.h"

#include <cmath>
#include <cstdlib>

namespace
{
    [[noreturn]] void fail (const juce::String& message)
    {
        throw UsageError (message.toStdString());
    }

    // A whole number or decimal, nothing more: "0.7" but not "0.7x" or "".
    std::optional<double> parseNumber (const juce::String& text)
    {
        const auto trimmed = text.trim();

        if (trimmed.isEmpty() || ! trimmed.containsOnly ("0123456789.-+eE"))
            return std::nullopt;

        const auto utf8 = trimmed.toStdString();
        char* end = nullptr;
        const double value = std::strtod (utf8.c_str(), &end);

        if (end != utf8.c_str() + utf8.size() || ! std::isfinite (value))
            return std::nullopt;

        return value;
    }

    PluginSettings::Value parseSetting (const juce::String& text)
    {
        const int equals = text.lastIndexOfChar ('=');

        if (equals <= 0)
            fail ("--set expects NAME=VALUE, e.g. --set \"Late Size=0.8\"; got \"" + text + "\"");

        const auto name = text.substring (0, equals).trim();
        const auto value = parseNumber (text.substring (equals + 1));

        if (! value.has_value() || *value < 0.0 || *value > 1.0)
            fail ("--set \"" + text + "\": the value must be a number from 0 to 1");

        return { name, (float) *value };
    }

    int parseQuality (const juce::String& keyword)
    {
        const int step = CorvelleEffect::qualityStepForKeyword (keyword.trim().toLowerCase());

        if (step < 0)
            fail ("--quality must be low, medium, high or highest; got \"" + keyword + "\"");

        return step;
    }

    std::optional<double> parseTail (const juce::String& text)
    {
        if (text.trim().equalsIgnoreCase ("auto"))
            return std::nullopt;

        const auto seconds = parseNumber (text);

        if (! seconds.has_value() || *seconds < 0.0 || *seconds > 3600.0)
            fail ("--tail must be \"auto\" or a number of seconds from 0 to 3600; got \"" + text + "\"");

        return seconds;
    }

    juce::File resolve (const juce::String& path)
    {
        return juce::File::getCurrentWorkingDirectory().getChildFile (path);
    }

    // Walks the arguments, taking option values either from "--name=value"
    // or from the argument that follows.
    class ArgumentReader
    {
    public:
        explicit ArgumentReader (const juce::StringArray& a) : arguments (a) {}

        bool next()
        {
            if (position >= arguments.size())
                return false;

            current = arguments[position++];
            attachedValue.reset();

            if (! optionsEnded && current.startsWith ("--") && current.containsChar ('='))
            {
                attachedValue = current.fromFirstOccurrenceOf ("=", false, false);
                current = current.upToFirstOccurrenceOf ("=", false, false);
            }

            return true;
        }

        const juce::String& argument() const noexcept { return current; }

        bool isOption() const { return ! optionsEnded && current.startsWith ("-") && current.length() > 1; }

        bool is (const char* shortName, const char* longName) const
        {
            return current == longName || (shortName != nullptr && current == shortName);
        }

        juce::String value()
        {
            if (attachedValue.has_value())
                return *attachedValue;

            if (position >= arguments.size())
                fail (current + " needs a value");

            return arguments[position++];
        }

        void endOptions() noexcept { optionsEnded = true; }

        bool hasAttachedValue() const noexcept { return attachedValue.has_value(); }

    private:
        const juce::StringArray& arguments;
        int position = 0;
        juce::String current;
        std::optional<juce::String> attachedValue;
        bool optionsEnded = false;
    };

    juce::File parseFileValue (ArgumentReader& reader)
    {
        const auto path = reader.value();

        if (path.isEmpty())
            fail (reader.argument() + " needs a file name");

        return resolve (path);
    }
}

RenderOptions parseCommandLine (const juce::StringArray& arguments)
{
    RenderOptions options;
    ArgumentReader reader (arguments);
    juce::String outputPath;

    while (reader.next())
    {
        if (! reader.isOption())
        {
            options.inputs.add (resolve (reader.argument()));
            continue;
        }

        if (reader.argument() == "--")
        {
            reader.endOptions();
        }
        else if (reader.is ("-h", "--help"))
        {
            options.showHelp = true;
        }
        else if (reader.is ("-o", "--output"))
        {
            outputPath = reader.value();

            if (outputPath.isEmpty())
                fail ("-o needs a file or folder name");
        }
        else if (reader.is (nullptr, "--set"))
        {
            options.plugin.values.push_back (parseSetting (reader.value()));
        }
        else if (reader.is (nullptr, "--quality"))
        {
            options.plugin.qualityStep = parseQuality (reader.value());
        }
        else if (reader.is (nullptr, "--tail"))
        {
            options.tailSeconds = parseTail (reader.value());
        }
        else if (reader.is ("-f", "--force"))
        {
            options.replaceExisting = true;
        }
        else if (reader.is ("-j", "--jobs"))
        {
            const auto jobs = parseNumber (reader.value());

            if (! jobs.has_value() || *jobs < 1.0 || *jobs > 256.0 || *jobs != std::floor (*jobs))
                fail ("--jobs must be a whole number from 1 to 256");

            options.jobs = (int) *jobs;
        }
        else if (reader.is (nullptr, "--ir"))
        {
            options.impulseResponseFile = parseFileValue (reader);
        }
        else if (reader.is (nullptr, "--plot"))
        {
            options.plotFile = parseFileValue (reader);

            if (! options.plotFile->hasFileExtension ("png"))
                fail ("--plot writes a PNG image; give it a name ending in .png");
        }
        else if (reader.is (nullptr, "--rate"))
        {
            const auto rate = parseNumber (reader.value());

            if (! rate.has_value() || *rate < 8000.0 || *rate > 192000.0)
                fail ("--rate must be a sample rate from 8000 to 192000 Hz");

            options.impulseSampleRate = *rate;
        }
        else if (reader.is (nullptr, "--make-demo-phrase"))
        {
            options.demoPhraseFile = parseFileValue (reader);
        }
        else if (reader.is (nullptr, "--list-parameters"))
        {
            options.listParameters = true;
        }
        else if (reader.is (nullptr, "--preset"))
        {
            options.plugin.preset = reader.value().trim();

            if (options.plugin.preset.isEmpty())
                fail ("--preset needs a factory preset's name or a preset file");
        }
        else if (reader.is (nullptr, "--list-presets"))
        {
            options.listPresets = true;
        }
        else
        {
            fail ("unknown option " + reader.argument());
        }

        if (reader.hasAttachedValue() && (reader.is ("-h", "--help") || reader.is ("-f", "--force")
                                          || reader.is (nullptr, "--list-parameters") || reader.is (nullptr, "--list-presets")))
            fail (reader.argument() + " takes no value");
    }

    if (outputPath.isNotEmpty())
    {
        if (options.inputs.isEmpty())
            fail ("-o names where rendered inputs go, but no input files were given");

        options.output = resolve (outputPath);
        options.outputIsFolder = options.inputs.size() > 1 || outputPath.endsWithChar ('/') || options.output->isDirectory();
    }
    else if (options.inputs.size() == 2 && options.inputs[0].existsAsFile() && ! options.inputs[1].exists())
    {
        // "INPUT OUTPUT": a second name that does not exist yet can only be where the render goes.
        options.output = options.inputs.removeAndReturn (1);
    }

    const bool hasWork = ! options.inputs.isEmpty() || options.measuresDecay()
                         || options.demoPhraseFile.has_value() || options.listParameters || options.listPresets;

    if (! hasWork && ! options.showHelp)
        fail ("nothing to do: give input files, --ir, --plot, --make-demo-phrase, --list-parameters or --list-presets");

    return options;
}

juce::String helpText (const juce::String& inputFormats, const juce::String& outputExtensions)
{
    return juce::String (R"(Usage: quorlane-render [options] INPUT...
       quorlane-render [options] INPUT OUTPUT
       quorlane-render [options] --ir RESPONSE.wav [--plot DECAY.png]
       quorlane-render --make-demo-phrase FILE.wav

Renders audio files through the Quorlane reverb plug-in, exactly as a host
would play them, each at its own sample rate. The output is always stereo,
24-bit, and lines up with the input sample for sample (the plug-in's latency
is taken out).
  Inputs                  INPUT_FORMATS, mono or stereo.
  Outputs                 OUTPUT_EXTENSIONS: the format the name's
                          extension names.

Where the output goes
  -o, --output PATH       With one input: the output file, or a folder
                          (existing, or written with a trailing /) to put it
                          in under the input's name. With several inputs: a
                          folder, created if missing; each output keeps its
                          input's name. Without -o, each output is written
                          beside its input as NAME-quorlane.EXT; with
                          exactly two names, a second one that does not
                          exist yet is the output file.
  -f, --force             Replace outputs that already exist. Without it an
                          existing file is an error and is left untouched.
                          Outputs are written under a temporary name and
                          only put in place once complete.

Settings
  --preset NAME|FILE      Start from a factory preset (its name, in any case,
                          as --list-presets shows it; quote names with
                          spaces) or from a preset file (.qlprs). Without
                          it every parameter starts at its default.
  --set "NAME=VALUE"      Set a parameter to a normalised value from 0 to 1;
                          repeat for more. Names as --list-parameters shows
                          them, e.g. --set "Late Size=0.8" --set FX=1.
  --quality KEYWORD       low, medium, high or highest (default: highest).
  --tail auto|SECONDS     How long to keep rendering after the input ends.
                          auto (the default) stops once the output has stayed
                          below -90 dBFS for half a second, after at most 60 s.
  --list-parameters       Print every parameter with its value and text at
                          the given settings.
  --list-presets          Print the factory presets by group.

Decay measurement
  --ir FILE               Render the impulse response at the given settings
                          (until it falls below -140 dBFS, at most 300 s)
                          and print EDT, T20 and T30 per channel from
                          Schroeder integration beside the plug-in's Decay
                          Time estimate. Add --set FX=1 to measure the wet
                          signal alone.
  --plot FILE.png         Draw both channels' energy decay curves with the
                          estimate marked (measures even without --ir).
  --rate HZ               Sample rate of the impulse response (default 48000).

Other
  --make-demo-phrase FILE Synthesise a short dry phrase (plucked notes, a
                          drum hit and a click; 48 kHz stereo) to try it on.
  -j, --jobs N            Render at most N files at once (default: one per
                          processor core).
  -h, --help              Show this text.
  --                      Treat every later argument as an input file.

Examples
  quorlane-render vocal.wav -o vocal-hall.wav --set "Late Size=0.8"
  quorlane-render --preset "Concert hall" vocal.wav vocal-hall.wav
  quorlane-render takes/*.wav -o wet/ --set FX=0.4 --quality high
  quorlane-render --set "Late Feedback=0.7" --set FX=1 --ir hall.wav --plot hall.png

Exit status: 0 on success, 1 when a file could not be read or written, 2 for
a malformed command line.
)")
        .replace ("INPUT_FORMATS", inputFormats)
        .replace ("OUTPUT_EXTENSIONS", outputExtensions);
}
