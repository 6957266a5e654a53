#pragma once

#include <cstdint>

// Bytes the process holds on the heap right now, or -1 where the C library
// cannot say. Differences around a piece of work give what it keeps.
std::int64_t heapBytesInUse();
