#include "SafeOutputFile.h"

#include "RenderErrors.h"

#include <filesystem>

namespace
{
    [[noreturn]] void fail (const juce::File& file, const juce::String& problem)
    {
        throw RenderError (("cannot write " + file.getFullPathName() + ": " + problem).toStdString());
    }

    // UTF-8 names reach the system intact on every platform.
    std::filesystem::path pathOf (const juce::File& file)
    {
        return std::filesystem::path (reinterpret_cast<const char8_t*> (file.getFullPathName().toRawUTF8()));
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
    const auto from = pathOf (temporary.getFile());
    const auto to = pathOf (target);
    std::error_code error;

    if (replaceExisting)
    {
        std::filesystem::rename (from, to, error);

        if (error)
            fail (target, error.message());

        return;
    }

    // A hard link never replaces an existing name, so a file that someone
    // created at the target while we rendered survives. Where links are not
    // supported, fall back to a check followed by a rename.
    std::filesystem::create_hard_link (from, to, error);

    if (! error)
        return;

    if (error == std::errc::file_exists)
        fail (target, "a file appeared there while rendering; it was left untouched");

    if (target.exists())
        fail (target, "it already exists (use --force to replace it)");

    std::filesystem::rename (from, to, error);

    if (error)
        fail (target, error.message());
}
