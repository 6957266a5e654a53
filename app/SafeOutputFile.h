#pragma once

#include <juce_core/juce_core.h>

#include <memory>

// A file written beside its target under a hidden temporary name and moved
// into place only when complete, so a failed or interrupted write never
// leaves half a file behind or touches one that was already there.
class SafeOutputFile
{
public:
    // Throws a RenderError when the target is a folder, when its folder does
    // not exist, or when it exists and may not be replaced.
    SafeOutputFile (const juce::File& target, bool replaceExisting);

    // The checks of the constructor, for planning before any work is done.
    static void checkTarget (const juce::File& target, bool replaceExisting);

    // A fresh stream on the temporary file; throws a RenderError on failure.
    std::unique_ptr<juce::FileOutputStream> openStream();

    // Puts the finished file in place. Without replacement, a target that
    // appeared in the meantime is left alone and the commit fails.
    void commit();

private:
    const juce::File target;
    const bool replaceExisting;
    juce::TemporaryFile temporary;
};
