#include "Environment.h"

#if defined(_WIN32)
 #include <windows.h>

 #include <string>

namespace
{
    std::wstring wide (const char* utf8)
    {
        const int length = MultiByteToWideChar (CP_UTF8, 0, utf8, -1, nullptr, 0);
        std::wstring text ((size_t) length, L'\0');
        MultiByteToWideChar (CP_UTF8, 0, utf8, -1, text.data(), length);
        text.resize ((size_t) length - 1);
        return text;
    }
}

// The C runtime's copy and the system's (which JUCE reads) both change.
void setEnvironmentVariable (const char* name, const char* value)
{
    _wputenv_s (wide (name).c_str(), value != nullptr ? wide (value).c_str() : L"");
}

std::string environmentVariable (const char* name)
{
    const wchar_t* value = _wgetenv (wide (name).c_str());

    if (value == nullptr)
        return {};

    const int length = WideCharToMultiByte (CP_UTF8, 0, value, -1, nullptr, 0, nullptr, nullptr);
    std::string text ((size_t) length, '\0');
    WideCharToMultiByte (CP_UTF8, 0, value, -1, text.data(), length, nullptr, nullptr);
    text.resize ((size_t) length - 1);
    return text;
}
#else
 #include <cstdlib>

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
