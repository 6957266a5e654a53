#pragma once

#include <string>

// Sets a variable of this process's environment (UTF-8), or removes it when
// the value is null, so that the process and the libraries it loads see it.
void setEnvironmentVariable (const char* name, const char* value);

// A variable of this process's environment (UTF-8), empty when it is unset.
std::string environmentVariable (const char* name);

// The build's own plug-in, or the installed copy the variable names: the
// package tests load what each install put in place.
inline std::string pluginLocation (const char* variable, const char* built)
{
    const auto installed = environmentVariable (variable);
    return installed.empty() ? built : installed;
}
