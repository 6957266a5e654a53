#pragma once

#include <string>

// A plug-in binary opened the way a host on this platform opens it
// (LoadLibrary or dlopen), with its exported symbols looked up by name. It
// stays loaded for the rest of the process: the plug-in's own threads and
// singletons may outlive its instances.
class SharedLibrary
{
public:
    explicit SharedLibrary (const char* utf8Path);

    void* symbol (const char* name) const;

    // Why the library did not open.
    const std::string& error() const noexcept { return problem; }

private:
    void* handle = nullptr;
    std::string problem;
};
