#include "AudioFiles.h"
#include "CommandLine.h"
#include "CommandLineArguments.h"
#include "DecayPlot.h"
#include "DemoPhrase.h"
#include "FileRenderer.h"
#include "PresetChoice.h"
#include "ImpulseResponse.h"
#include "RenderErrors.h"
#include "engine/Quorlane.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <iostream>

namespace
{
    constexpr double demoSampleRate = 48000.0;

    // Each problem on its own line, prefixed; indented lines continue the one before.
    void printError (const juce::String& message)
    {
        for (const auto& line : juce::StringArray::fromLines (message))
            std::cerr << (line.startsWithChar (' ') ? line : "quorlane-render: " + line) << "\n";
    }

    void measureDecay (const RenderOptions& options)
    {
        const auto response = ImpulseResponse::render (options.plugin, options.impulseSampleRate);

        if (options.impulseResponseFile.has_value())
        {
            AudioFiles().write (response.samples, response.sampleRate, *options.impulseResponseFile, options.replaceExisting);
            std::cout << "wrote " << options.impulseResponseFile->getFullPathName() << "\n";
        }

        if (options.plotFile.has_value())
        {
            writePng (drawDecayPlot (response), *options.plotFile, options.replaceExisting);
            std::cout << "wrote " << options.plotFile->getFullPathName() << "\n";
        }

        std::cout << response.report();
    }

    int run (const juce::StringArray& arguments)
    {
        const auto options = parseCommandLine (arguments);

        if (options.showHelp)
        {
            const AudioFiles files;
            std::cout << helpText (files.inputFormatNames(), files.outputExtensions());
            return 0;
        }

        {
            // Checks every --set name before any work starts.
            Quorlane plugin;
            applySettings (plugin, options.plugin);

            if (options.listParameters)
                std::cout << describeParameters (plugin);

            if (options.listPresets)
                std::cout << listFactoryPresets (plugin);
        }

        AudioFiles files;

        if (options.demoPhraseFile.has_value())
        {
            files.formatForOutput (*options.demoPhraseFile);
            files.write (synthesiseDemoPhrase (demoSampleRate), demoSampleRate, *options.demoPhraseFile, options.replaceExisting);
            std::cout << "wrote " << options.demoPhraseFile->getFullPathName() << "\n";
        }

        const auto renders = planFileRenders (options, files);

        if (options.outputIsFolder && ! renders.empty())
            if (const auto created = options.output->createDirectory(); created.failed())
                throw RenderError (("cannot create the folder " + options.output->getFullPathName() + ": "
                                    + created.getErrorMessage()).toStdString());

        const bool rendered = renderFiles (renders, options);

        if (options.measuresDecay())
            measureDecay (options);

        return rendered ? 0 : 1;
    }
}

int main (int argc, char* argv[])
{
    // JUCE's singletons (the font cache, the message queue that parameters
    // post to) are set up and torn down as in any JUCE application; no
    // window is ever opened.
    const juce::ScopedJuceInitialiser_GUI juce;

    try
    {
        return run (commandLineArguments (argc, argv));
    }
    catch (const UsageError& e)
    {
        printError (juce::String::fromUTF8 (e.what()));
        std::cerr << "Try 'quorlane-render --help' for more information.\n";
        return 2;
    }
    catch (const std::exception& e)
    {
        printError (juce::String::fromUTF8 (e.what()));
        return 1;
    }
}
