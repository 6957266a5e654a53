#include "AudioThreadCounters.h"
#include "LockTakers.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <pthread.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <new>

// This binary replaces the C library's allocation functions (or, under a
// sanitizer, whose runtime owns them, the global operators new and delete)
// and wraps pthread_mutex_lock and write(); each counts only on a thread that
// asked to be watched, and then does what the original would. Counting at the
// C library also sees the plug-in libraries loaded into the process, which
// carry their own C++ runtime.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
 #define QUORLANE_COUNT_OPERATOR_NEW 1
#else
 #define QUORLANE_COUNT_OPERATOR_NEW 0
#endif

namespace
{
thread_local bool watched = false, recording = false;
thread_local const void* lastRecorded = nullptr;

std::atomic<long> allocations { 0 }, locks { 0 }, ownLocks { 0 }, lockWaits { 0 }, hostLockWaits { 0 }, writes { 0 };

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

template <typename Function>
Function next (const char* name)
{
    return reinterpret_cast<Function> (dlsym (RTLD_NEXT, name));
}

void* allocate (std::size_t size, std::size_t alignment = 0)
{
    if (QUORLANE_COUNT_OPERATOR_NEW && watched)
        ++allocations;

    void* p = alignment > alignof (std::max_align_t) ? std::aligned_alloc (alignment, (size + alignment - 1) / alignment * alignment)
                                                      : std::malloc (size != 0 ? size : 1);

    if (p == nullptr)
        throw std::bad_alloc();

    return p;
}

void release (void* p) noexcept
{
    if (QUORLANE_COUNT_OPERATOR_NEW && watched && p != nullptr)
        ++allocations;

    std::free (p);
}
}

#if ! QUORLANE_COUNT_OPERATOR_NEW
namespace
{
void countHeapCall() noexcept
{
    if (watched)
        ++allocations;
}
}

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

AudioThreadCounters::Watch::Watch()
{
    // The first stack walk loads the unwinder, which allocates.
    void* frames[2];
    backtrace (frames, 2);
    watched = true;
}
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
    return { allocations.load(), locks.load(), ownLocks.load(), lockWaits.load(), hostLockWaits.load(), writes.load() };
}

void* operator new (std::size_t size) { return allocate (size); }
void* operator new[] (std::size_t size) { return allocate (size); }
void* operator new (std::size_t size, std::align_val_t a) { return allocate (size, (std::size_t) a); }
void* operator new[] (std::size_t size, std::align_val_t a) { return allocate (size, (std::size_t) a); }

void* operator new (std::size_t size, const std::nothrow_t&) noexcept
{
    try { return allocate (size); } catch (...) { return nullptr; }
}

void* operator new[] (std::size_t size, const std::nothrow_t&) noexcept
{
    try { return allocate (size); } catch (...) { return nullptr; }
}

void operator delete (void* p) noexcept { release (p); }
void operator delete[] (void* p) noexcept { release (p); }
void operator delete (void* p, std::size_t) noexcept { release (p); }
void operator delete[] (void* p, std::size_t) noexcept { release (p); }
void operator delete (void* p, std::align_val_t) noexcept { release (p); }
void operator delete[] (void* p, std::align_val_t) noexcept { release (p); }
void operator delete (void* p, std::size_t, std::align_val_t) noexcept { release (p); }
void operator delete[] (void* p, std::size_t, std::align_val_t) noexcept { release (p); }

// A lock that is free is taken at once; one that is not makes the caller wait.
extern "C" int pthread_mutex_lock (pthread_mutex_t* mutex)
{
    static const auto original = next<int (*) (pthread_mutex_t*)> ("pthread_mutex_lock");
    lastRecorded = mutex;

    if (recording && exemptCount.load() < (int) std::size (exempt))
    {
        recording = false;
        exempt[exemptCount.load()] = mutex;
        ++exemptCount;
    }

    if (watched)
    {
        ++locks;
        watched = false;
        LockTakers::note();
        watched = true;

        if (! isExempt (mutex))
            ++ownLocks;

        if (pthread_mutex_trylock (mutex) == 0)
            return 0;

        ++(isExempt (mutex) ? hostLockWaits : lockWaits);
    }

    return original (mutex);
}

// JUCE posts a message to the message thread by writing to its socket.
extern "C" ssize_t write (int fd, const void* data, size_t size)
{
    static const auto original = next<ssize_t (*) (int, const void*, size_t)> ("write");

    if (watched)
        ++writes;

    return original (fd, data, size);
}
