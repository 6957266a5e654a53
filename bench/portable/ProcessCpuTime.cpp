#include "ProcessCpuTime.h"

#if defined(_WIN32)
 #include <windows.h>

double processCpuSeconds()
{
    FILETIME creation, exit, kernel, user;
    if (! GetProcessTimes (GetCurrentProcess(), &creation, &exit, &kernel, &user))
        return 0.0;

    const auto ticks = [] (const FILETIME& t) { return ((unsigned long long) t.dwHighDateTime << 32) | t.dwLowDateTime; };
    return (double) (ticks (kernel) + ticks (user)) * 1.0e-7;
}
#else
 #include <ctime>

double processCpuSeconds()
{
    timespec now {};
    clock_gettime (CLOCK_PROCESS_CPUTIME_ID, &now);
    return (double) now.tv_sec + (double) now.tv_nsec * 1.0e-9;
}
#endif
