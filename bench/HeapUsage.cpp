#include "HeapUsage.h"

#if defined(__GLIBC__)
 #include <malloc.h>
#endif

std::int64_t heapBytesInUse()
{
   #if defined(__GLIBC__)
    const auto info = mallinfo2();
    return (std::int64_t) (info.uordblks + info.hblkhd);
   #else
    return -1;
   #endif
}
