#pragma once

#include <juce_core/juce_core.h>

#include <cstdio>
#include <mutex>

// A one-line progress bar on stderr, drawn only when stderr is a terminal so
// logs and pipes stay clean. Lines printed through it from any thread clear
// the bar first, so the two never tangle.
class TerminalProgress
{
public:
    TerminalProgress();
    ~TerminalProgress();

    void show (double fraction, const juce::String& label);
    void print (std::FILE* stream, const juce::String& line);

private:
    void clearBar();
    void drawBar();

    const bool enabled;
    std::mutex mutex;
    juce::String bar;
};
