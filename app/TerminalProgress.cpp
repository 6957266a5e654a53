#include "TerminalProgress.h"

#include "Terminal.h"

TerminalProgress::TerminalProgress() : enabled (prepareTerminalForProgress()) {}

TerminalProgress::~TerminalProgress()
{
    const std::lock_guard<std::mutex> lock (mutex);
    clearBar();
}

void TerminalProgress::show (double fraction, const juce::String& label)
{
    if (! enabled)
        return;

    constexpr int width = 30;
    const int filled = juce::jlimit (0, width, (int) (fraction * width));

    const std::lock_guard<std::mutex> lock (mutex);
    clearBar();
    bar = "[" + juce::String::repeatedString ("#", filled) + juce::String::repeatedString ("-", width - filled) + "] "
          + juce::String (juce::jlimit (0, 100, (int) (fraction * 100.0))).paddedLeft (' ', 3) + "%  " + label;
    drawBar();
}

void TerminalProgress::print (std::FILE* stream, const juce::String& line)
{
    const std::lock_guard<std::mutex> lock (mutex);
    clearBar();
    std::fputs ((line + "\n").toRawUTF8(), stream);
    std::fflush (stream);
    drawBar();
}

void TerminalProgress::clearBar()
{
    if (enabled && bar.isNotEmpty())
    {
        std::fputs ("\r\033[K", stderr);
        std::fflush (stderr);
    }
}

void TerminalProgress::drawBar()
{
    if (enabled && bar.isNotEmpty())
    {
        std::fputs (bar.toRawUTF8(), stderr);
        std::fflush (stderr);
    }
}
