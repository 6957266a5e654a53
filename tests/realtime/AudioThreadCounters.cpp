#include "AudioThreadCounters.h"
#include "LockTakers.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <exception>

// This binary replaces the C library's allocation functions and wraps
// pthread_mutex_lock and write(); each counts only on a thread that asked to
// be watched, and then does what the original would. Counting at the C
// library also sees the plug-in libraries loaded into the process, which carry
// their own C++ runtime. Under a sanitizer, whose runtime owns the allocation
// functions, heap calls go uncounted (QUORLANE_SANITIZED).
namespace
{
thread_local bool watched = false;

// Set by countLibrariesOnly(): the executable's base, and the C and C++
// runtimes' (which ask for memory on behalf of their callers).
std::atomic<const void*> executable { nullptr };
const void* runtimes[2] {};

const void* baseOf (const void* address)
{
    Dl_info info {};
    return dladdr (address, &info) != 0 ? info.dli_fbase : nullptr;
}

bool inRuntime (const void* address) { return baseOf (address) == runtimes[0] || baseOf (address) == runtimes[1]; }

// Whether the executable's own code asked for memory: the caller of the
// allocation function or, where that is a runtime (operator new, strdup),
// the first caller outside it.
bool askedByExecutable (const void* caller)
{
    void* frames[32];
    const int count = inRuntime (caller) ? backtrace (frames, 32) : 0;
    int i = 0;

    while (i < count && frames[i] != caller)
        ++i;

    while (i < count && inRuntime (frames[i]))
        ++i;

    return baseOf (i < count ? frames[i] : caller) == executable.load();
}

[[maybe_unused]] void countHeapCall (const void* caller) noexcept
{
    if (! watched)
        return;

    watched = false;
    AudioThreadCounters::heapCalls += executable.load() == nullptr || ! askedByExecutable (caller) ? 1 : 0;
    watched = true;
}
}

#if ! QUORLANE_SANITIZED
extern "C"
{
void* __libc_malloc (size_t);
void* __libc_calloc (size_t, size_t);
void* __libc_realloc (void*, size_t);
void* __libc_memalign (size_t, size_t);
void __libc_free (void*);

void* malloc (size_t size) { countHeapCall (__builtin_return_address (0)); return __libc_malloc (size); }
void* calloc (size_t count, size_t size) { countHeapCall (__builtin_return_address (0)); return __libc_calloc (count, size); }
void* realloc (void* p, size_t size) { countHeapCall (__builtin_return_address (0)); return __libc_realloc (p, size); }
void* memalign (size_t alignment, size_t size) { countHeapCall (__builtin_return_address (0)); return __libc_memalign (alignment, size); }
void* aligned_alloc (size_t alignment, size_t size) { countHeapCall (__builtin_return_address (0)); return __libc_memalign (alignment, size); }
void free (void* p)
{
    if (p != nullptr)
        countHeapCall (__builtin_return_address (0));

    __libc_free (p);
}

int posix_memalign (void** result, size_t alignment, size_t size)
{
    countHeapCall (__builtin_return_address (0));
    *result = __libc_memalign (alignment, size);
    return *result != nullptr ? 0 : ENOMEM;
}
}
#endif

AudioThreadCounters::Watch::Watch()
{
    // The first stack walk loads the unwinder, which allocates.
    void* frames[2];
    backtrace (frames, 2);
    watched = true;
}

AudioThreadCounters::Watch::~Watch() { watched = false; }

void AudioThreadCounters::countLibrariesOnly()
{
    runtimes[0] = baseOf ((const void*) &std::terminate);
    runtimes[1] = baseOf ((const void*) &fputs);
    executable = baseOf ((const void*) &AudioThreadCounters::countLibrariesOnly);
}

std::atomic<long> AudioThreadCounters::heapCalls { 0 }, AudioThreadCounters::locks { 0 }, AudioThreadCounters::writes { 0 };

// Each lock is traced to the code that asked for it.
extern "C" int pthread_mutex_lock (pthread_mutex_t* mutex)
{
    static const auto original = reinterpret_cast<int (*) (pthread_mutex_t*)> (dlsym (RTLD_NEXT, "pthread_mutex_lock"));

    if (watched)
    {
        ++AudioThreadCounters::locks;
        watched = false;
        LockTakers::note();
        watched = true;
    }

    return original (mutex);
}

// JUCE posts a message to the message thread by writing to its socket.
extern "C" ssize_t write (int fd, const void* data, size_t size)
{
    static const auto original = reinterpret_cast<ssize_t (*) (int, const void*, size_t)> (dlsym (RTLD_NEXT, "write"));

    if (watched)
        ++AudioThreadCounters::writes;

    return original (fd, data, size);
}
