#pragma once

#include <juce_core/juce_core.h>

// File dialogs open where the user last loaded or saved a file of the same
// kind; before that (or once that folder is gone), in their documents folder,
// and in their home folder on systems that have no documents folder.
inline juce::File dialogFolder (const juce::File& lastFolder)
{
    if (lastFolder.isDirectory())
        return lastFolder;

    const auto documents = juce::File::getSpecialLocation (juce::File::userDocumentsDirectory);
    return documents.isDirectory() ? documents : juce::File::getSpecialLocation (juce::File::userHomeDirectory);
}
