#pragma once

// CPU seconds the whole process has used so far, user and system time
// together, as Google Benchmark counts it.
double processCpuSeconds();
