#include "SafeOutputFile.h"

#include "RenderErrors.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace
{
    [[noreturn]] void fail (const juce::File& file, const juce::String& problem)
    {
        throw RenderError (("cannot write " + file.getFullPathName() + ": " + problem).toStdString());
    }
}

SafeOutputFile::SafeOutputFile (const juce::File& file, bool replace)
    : target (file), replaceExisting (replace), temporary (file, juce::TemporaryFile::useHiddenFile)
{
    checkTarget (target, replaceExisting);
}

void SafeOutputFile::checkTarget (const juce::File& file, bool replace)
{
    if (file.isDirectory())
        fail (file, "it is a folder");

    if (! file.getParentDirectory().isDirectory())
        fail (file, "the folder " + file.getParentDirectory().getFullPathName() + " does not exist");

    if (file.exists() && ! replace)
        fail (file, "it already exists (use --force to replace it)");
}

std::unique_ptr<juce::FileOutputStream> SafeOutputFile::openStream()
{
    auto stream = std::make_unique<juce::FileOutputStream> (temporary.getFile());

    if (stream->failedToOpen())
        fail (target, stream->getStatus().getErrorMessage());

    return stream;
}

void SafeOutputFile::commit()
{
    const auto from = temporary.getFile().getFullPathName().toStdString();
    const auto to = target.getFullPathName().toStdString();

    if (replaceExisting)
    {
        if (std::rename (from.c_str(), to.c_str()) != 0)
            fail (target, std::strerror (errno));

        return;
    }

    // A hard link never replaces an existing name, so a file that someone
    // created at the target while we rendered survives. Where links are not
    // supported, fall back to a check followed by a rename.
    if (::link (from.c_str(), to.c_str()) == 0)
        return;

    if (errno == EEXIST)
        fail (target, "a file appeared there while rendering; it was left untouched");

    if (target.exists())
        fail (target, "it already exists (use --force to replace it)");

    if (std::rename (from.c_str(), to.c_str()) != 0)
        fail (target, std::strerror (errno));
}
