#pragma once

#include "CommandLine.h"

#include <vector>

class AudioFiles;

struct FileRender
{
    juce::File input, output;
    juce::int64 inputLength = 0; // samples
};

// Where each input's render goes: the -o file, the input's name inside the
// -o folder, or NAME-quorlane.EXT beside the input (an input in a format that
// cannot be written gets .wav).
//
// Checks everything that can be checked before any work starts, so a run
// either fails at once or renders: inputs are readable mono or stereo audio;
// no output is an input or is named twice (the --ir and --plot files
// included); no output exists unless it may be replaced. Throws a
// RenderError listing every problem found, or a UsageError for an output
// extension that cannot be written.
std::vector<FileRender> planFileRenders (const RenderOptions& options, AudioFiles& files);
