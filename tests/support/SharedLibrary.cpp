#include "SharedLibrary.h"

#if defined(_WIN32)
 #include <windows.h>

 #include <filesystem>

SharedLibrary::SharedLibrary (const char* utf8Path)
{
    handle = LoadLibraryW (std::filesystem::path ((const char8_t*) utf8Path).wstring().c_str());

    if (handle == nullptr)
        problem = "LoadLibrary failed with error " + std::to_string (GetLastError());
}

void* SharedLibrary::symbol (const char* name) const
{
    return handle != nullptr ? reinterpret_cast<void*> (GetProcAddress (static_cast<HMODULE> (handle), name)) : nullptr;
}
#else
 #include <dlfcn.h>

SharedLibrary::SharedLibrary (const char* utf8Path)
{
    handle = dlopen (utf8Path, RTLD_NOW | RTLD_LOCAL);

    if (handle == nullptr)
        problem = dlerror();
}

void* SharedLibrary::symbol (const char* name) const
{
    return handle != nullptr ? dlsym (handle, name) : nullptr;
}
#endif
