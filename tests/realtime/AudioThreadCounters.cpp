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
// functions, heap calls go uncounted (countsHeapCalls).
namespace
{
thread_local bool watched = false;

std::atomic<long> allocations { 0 }, locks { 0 }, writes { 0 };

// Set by countLibrariesOnly(): the executable's base, and the runtime
// libraries' (which ask for memory on behalf of their callers).
std::atomic<const void*> executable { nullptr };
const void* runtimes[2] {};

const void* baseOf (const void* address)
{
    Dl_info info {};
    return dladdr (address, &info) != 0 ? info.dli_fbase : nullptr;
}

bool isRuntime (const void* base) { return base == runtimes[0] || base == runtimes[1]; }

// Whether the code that asked for memory is the executable's own: the caller
// of the allocation function or, where that is the C or C++ runtime
// (operator new, strdup), the first caller outside it.
bool askedByExecutable (const void* caller)
{
    if (! isRuntime (baseOf (caller)))
        return baseOf (caller) == executable.load();

    void* frames[32];
    const int count = backtrace (frames, 32);
    int i = 0;

    while (i < count && frames[i] != caller)
        ++i;

    while (i < count && isRuntime (baseOf (frames[i])))
        ++i;

    return i < count && baseOf (frames[i]) == executable.load();
}

[[maybe_unused]] void countHeapCall (const void* caller) noexcept
{
    if (! watched)
        return;

    watched = false;

    if (executable.load() == nullptr || ! askedByExecutable (caller))
        ++allocations;

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

    if (auto* p = __libc_memalign (alignment, size))
    {
        *result = p;
        return 0;
    }

    return ENOMEM;
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
    executable = baseOf ((const void*) &AudioThreadCounters::read);
}

AudioThreadCounters::Counts AudioThreadCounters::read()
{
    return { allocations.load(), locks.load(), writes.load() };
}

// Each lock is traced to the code that asked for it.
extern "C" int pthread_mutex_lock (pthread_mutex_t* mutex)
{
    static const auto original = reinterpret_cast<int (*) (pthread_mutex_t*)> (dlsym (RTLD_NEXT, "pthread_mutex_lock"));

    if (watched)
    {
        ++locks;
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
        ++writes;

    return original (fd, data, size);
}
