#pragma once

#include "PluginSettings.h"

#include <juce_core/juce_core.h>

#include <optional>

// Everything one run of quorlane-render was asked to do.
struct RenderOptions
{
    juce::Array<juce::File> inputs;
    std::optional<juce::File> output;   // a file, or a folder for several inputs
    bool outputIsFolder = false;        // -o named a folder (trailing slash, existing folder or several inputs)
    PluginSettings plugin;
    std::optional<double> tailSeconds;  // empty: until the output has gone silent
    bool replaceExisting = false;
    int jobs = 0;                       // 0: one per core
    std::optional<juce::File> impulseResponseFile;
    std::optional<juce::File> plotFile;
    double impulseSampleRate = 48000.0;
    std::optional<juce::File> demoPhraseFile;
    bool listParameters = false;
    bool listPresets = false;
    bool showHelp = false;

    bool measuresDecay() const { return impulseResponseFile.has_value() || plotFile.has_value(); }
};

// Reads the arguments (without the program name); relative paths are taken
// from the current directory. Throws a UsageError for anything malformed.
RenderOptions parseCommandLine (const juce::StringArray& arguments);

juce::String helpText (const juce::String& inputFormats, const juce::String& outputExtensions);
