#include "Environment.h"

#include <cstdlib>

#if defined(_WIN32)
 #include <filesystem>

// The C runtime's copy and the system's (which JUCE reads) both change.
void setEnvironmentVariable (const char* name, const char* value)
{
    const auto wide = [] (const char* utf8) { return std::filesystem::path ((const char8_t*) utf8).wstring(); };
    _wputenv_s (wide (name).c_str(), value != nullptr ? wide (value).c_str() : L"");
}

std::string environmentVariable (const char* name)
{
    const wchar_t* value = _wgetenv (std::filesystem::path ((const char8_t*) name).wstring().c_str());
    const auto utf8 = value != nullptr ? std::filesystem::path (value).u8string() : std::u8string();
    return { utf8.begin(), utf8.end() };
}
#else
void setEnvironmentVariable (const char* name, const char* value)
{
    if (value != nullptr)
        setenv (name, value, 1);
    else
        unsetenv (name);
}

std::string environmentVariable (const char* name)
{
    const char* value = std::getenv (name);
    return value != nullptr ? value : "";
}
#endif
