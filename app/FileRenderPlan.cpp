#include "FileRenderPlan.h"

#include "AudioFiles.h"
#include "RenderErrors.h"
#include "SafeOutputFile.h"

#include <filesystem>

namespace
{
    bool isSameFile (const juce::File& a, const juce::File& b)
    {
        if (a == b)
            return true;

        std::error_code error;
        return std::filesystem::equivalent (a.getFullPathName().toStdString(), b.getFullPathName().toStdString(), error);
    }

    juce::String writableExtension (const juce::File& input)
    {
        return input.hasFileExtension ("wav;flac;aif;aiff") ? input.getFileExtension() : juce::String (".wav");
    }

    juce::File outputFor (const juce::File& input, const RenderOptions& options)
    {
        if (! options.output.has_value())
            return input.getSiblingFile (input.getFileNameWithoutExtension() + "-quorlane" + writableExtension (input));

        if (options.outputIsFolder)
            return options.output->getChildFile (input.getFileNameWithoutExtension() + writableExtension (input));

        return *options.output;
    }
}

std::vector<FileRender> planFileRenders (const RenderOptions& options, AudioFiles& files)
{
    juce::StringArray problems;
    std::vector<FileRender> renders;

    const auto note = [&problems] (const std::exception& e) { problems.addIfNotAlreadyThere (juce::String::fromUTF8 (e.what())); };

    if (options.outputIsFolder && options.output->existsAsFile())
        problems.add ("cannot write into " + options.output->getFullPathName() + ": it is a file, not a folder");

    for (const auto& input : options.inputs)
    {
        FileRender render { input, outputFor (input, options) };
        files.formatForOutput (render.output);

        try
        {
            render.inputLength = files.openInput (input)->lengthInSamples;
        }
        catch (const RenderError& e)
        {
            note (e);
        }

        renders.push_back (render);
    }

    std::vector<juce::File> otherOutputs;

    if (options.impulseResponseFile.has_value())
    {
        files.formatForOutput (*options.impulseResponseFile);
        otherOutputs.push_back (*options.impulseResponseFile);
    }

    if (options.plotFile.has_value())
        otherOutputs.push_back (*options.plotFile);

    std::vector<juce::File> outputs;

    for (const auto& render : renders)
        outputs.push_back (render.output);

    outputs.insert (outputs.end(), otherOutputs.begin(), otherOutputs.end());

    for (size_t i = 0; i < outputs.size(); ++i)
    {
        const auto& output = outputs[i];

        for (const auto& input : options.inputs)
            if (isSameFile (output, input))
                problems.addIfNotAlreadyThere ("will not write " + output.getFullPathName() + ": it is one of the inputs");

        for (size_t j = 0; j < i; ++j)
            if (isSameFile (output, outputs[j]))
                problems.addIfNotAlreadyThere ("two outputs would both be written to " + output.getFullPathName());

        // A folder that is still to be created holds nothing to collide with.
        if (output.getParentDirectory().isDirectory())
        {
            try
            {
                SafeOutputFile::checkTarget (output, options.replaceExisting);
            }
            catch (const RenderError& e)
            {
                note (e);
            }
        }
        else if (! options.outputIsFolder || output.getParentDirectory() != *options.output)
        {
            problems.addIfNotAlreadyThere ("cannot write " + output.getFullPathName() + ": the folder "
                                           + output.getParentDirectory().getFullPathName() + " does not exist");
        }
    }

    if (! problems.isEmpty())
        throw RenderError (problems.joinIntoString ("\n").toStdString());

    return renders;
}
