#pragma once

// Sets a variable of this process's environment (UTF-8), or removes it when
// the value is null, so that the process and the libraries it loads see it.
void setEnvironmentVariable (const char* name, const char* value);
