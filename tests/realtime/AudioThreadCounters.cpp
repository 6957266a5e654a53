#include "AudioThreadCounters.h"

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <iterator>

// This binary replaces the C library's allocation functions and wraps
// pthread_mutex_lock and write(); each counts only on a thread that asked to
// be watched, and then does what the original would. Counting at the C
// library also sees the plug-in libraries loaded into the process, which carry
// their own C++ runtime. Under a sanitizer, whose runtime owns the allocation
// functions, heap calls go uncounted (countsHeapCalls).
namespace
{
thread_local bool watched = false, recording = false;
thread_local const void* lastRecorded = nullptr;

std::atomic<long> allocations { 0 }, ownLocks { 0 }, lockWaits { 0 }, writes { 0 };

// JUCE's own locks, filled before any thread is watched.
std::atomic<const void*> exempt[64] {};
std::atomic<int> exemptCount { 0 };

bool isExempt (const void* mutex)
{
    for (int i = 0; i < exemptCount.load(); ++i)
        if (exempt[i].load() == mutex)
            return true;

    return false;
}

[[maybe_unused]] void countHeapCall() noexcept
{
    if (watched)
        ++allocations;
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

void* malloc (size_t size) { countHeapCall(); return __libc_malloc (size); }
void* calloc (size_t count, size_t size) { countHeapCall(); return __libc_calloc (count, size); }
void* realloc (void* p, size_t size) { countHeapCall(); return __libc_realloc (p, size); }
void* memalign (size_t alignment, size_t size) { countHeapCall(); return __libc_memalign (alignment, size); }
void* aligned_alloc (size_t alignment, size_t size) { countHeapCall(); return __libc_memalign (alignment, size); }
void free (void* p)
{
    if (p != nullptr)
        countHeapCall();

    __libc_free (p);
}

int posix_memalign (void** result, size_t alignment, size_t size)
{
    countHeapCall();

    if (auto* p = __libc_memalign (alignment, size))
    {
        *result = p;
        return 0;
    }

    return ENOMEM;
}
}
#endif

AudioThreadCounters::Watch::Watch() { watched = true; }
AudioThreadCounters::Watch::~Watch() { watched = false; }
void AudioThreadCounters::exemptFirstLockOf (const std::function<void()>& action)
{
    recording = true;
    action();
    recording = false;
}

void AudioThreadCounters::exemptLastLockOf (const std::function<void()>& action)
{
    lastRecorded = nullptr;
    action();

    if (lastRecorded != nullptr && ! isExempt (lastRecorded) && exemptCount.load() < (int) std::size (exempt))
    {
        exempt[exemptCount.load()] = lastRecorded;
        ++exemptCount;
    }
}

AudioThreadCounters::Counts AudioThreadCounters::read()
{
    return { allocations.load(), ownLocks.load(), lockWaits.load(), writes.load() };
}

// A lock that is free is taken at once; one that is not makes the caller wait.
extern "C" int pthread_mutex_lock (pthread_mutex_t* mutex)
{
    static const auto original = reinterpret_cast<int (*) (pthread_mutex_t*)> (dlsym (RTLD_NEXT, "pthread_mutex_lock"));
    lastRecorded = mutex;

    if (recording && exemptCount.load() < (int) std::size (exempt))
    {
        recording = false;
        exempt[exemptCount.load()] = mutex;
        ++exemptCount;
    }

    if (watched && ! isExempt (mutex))
    {
        ++ownLocks;

        if (pthread_mutex_trylock (mutex) == 0)
            return 0;

        ++lockWaits;
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
