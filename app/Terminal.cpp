#include "Terminal.h"

#if defined(_WIN32)
 #include <windows.h>

 #include <cstdlib>

namespace
{
    UINT previousCodePage = 0;
}

// The console's code page outlives the program: it is put back at exit.
bool prepareTerminalForProgress()
{
    if (previousCodePage == 0 && (previousCodePage = GetConsoleOutputCP()) != 0)
    {
        SetConsoleOutputCP (CP_UTF8);
        std::atexit ([] { SetConsoleOutputCP (previousCodePage); });
    }

    const auto console = GetStdHandle (STD_ERROR_HANDLE);
    DWORD mode = 0;

    return GetConsoleMode (console, &mode) != 0
           && SetConsoleMode (console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}
#else
 #include <unistd.h>

bool prepareTerminalForProgress()
{
    return ::isatty (STDERR_FILENO) != 0;
}
#endif
