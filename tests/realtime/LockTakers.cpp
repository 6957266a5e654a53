#include "LockTakers.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <map>
#include <set>
#include <sstream>

namespace
{
// Frames to skip: note() and the lock wrapper that called it.
constexpr std::size_t skipped = 2, depth = 24;
using Stack = std::array<void*, depth>;

// Each distinct stack once, behind a spin lock of the test's own: the
// pthread locks are what is traced.
std::atomic_flag busy = ATOMIC_FLAG_INIT;
std::array<Stack, 256> stacks;
std::size_t stackCount = 0;
bool overflowed = false;

struct Frame { std::string function = "??", file = "??"; };

bool isLock (const std::string& function)
{
    for (const char* lock : { "pthread_mutex_lock", "__gthread_", "CriticalSection::enter", "GenericScopedLock", "std::mutex::",
                              "std::recursive_mutex::", "std::lock_guard", "std::unique_lock", "std::scoped_lock" })
        if (function.find (lock) != std::string::npos)
            return true;

    return false;
}

// Not the system's (JUCE, the C++ library) and not the test's own; a taker
// without debug information cannot be told apart, so it counts as ours.
bool isOurs (const std::string& file)
{
    return file.rfind ("/usr/", 0) != 0 && file.find ("tests/") == std::string::npos;
}

// The taker of each stack, its frames named by addr2line, one run per module.
std::vector<Frame> takers()
{
    Dl_info mainInfo {};
    dladdr ((void*) &takers, &mainInfo);
    std::vector<std::vector<Frame>> named (stackCount, std::vector<Frame> (depth));
    std::map<std::string, std::vector<std::pair<Frame*, std::uintptr_t>>> modules;

    for (std::size_t s = 0; s < stackCount; ++s)
        for (std::size_t f = 0; f < depth && stacks[s][f] != nullptr; ++f)
            if (Dl_info info {}; dladdr (stacks[s][f], &info) != 0 && info.dli_fname != nullptr)
                modules[info.dli_fbase == mainInfo.dli_fbase ? "/proc/" + std::to_string (getpid()) + "/exe" : info.dli_fname]
                    // A return address; the call is the byte before it.
                    .push_back ({ &named[s][f], (std::uintptr_t) stacks[s][f] - (std::uintptr_t) info.dli_fbase - 1 });

    for (const auto& [module, frames] : modules)
    {
        std::ostringstream command;
        command << "addr2line -f -C -e '" << module << "'" << std::hex;

        for (const auto& frame : frames)
            command << " 0x" << frame.second;

        if (auto* pipe = popen (command.str().c_str(), "r"))
        {
            char function[4096], file[4096];

            for (const auto& frame : frames)
                if (std::fgets (function, sizeof (function), pipe) != nullptr && std::fgets (file, sizeof (file), pipe) != nullptr)
                    *frame.first = { std::string (function, std::strcspn (function, "\n")), std::string (file, std::strcspn (file, "\n")) };

            pclose (pipe);
        }
    }

    std::vector<Frame> result;

    for (const auto& frames : named)
    {
        const auto taker = std::find_if (frames.begin(), frames.end(), [] (const Frame& f) { return ! isLock (f.function); });

        if (taker != frames.end())
            result.push_back (*taker);
    }

    if (overflowed)
        result.push_back ({ "more distinct lock stacks than were kept", "" });

    return result;
}
}

std::vector<std::string> LockTakers::named (bool oursOnly)
{
    std::set<std::string> found;

    for (const auto& taker : takers())
        if (! oursOnly || isOurs (taker.file))
            found.insert (taker.function + " (" + taker.file + ")");

    return { found.begin(), found.end() };
}

void LockTakers::note()
{
    void* frames[depth + skipped] {};
    const auto count = (std::size_t) std::max (backtrace (frames, (int) (depth + skipped)), (int) skipped);
    Stack stack {};
    std::copy (frames + skipped, frames + count, stack.begin());

    while (busy.test_and_set (std::memory_order_acquire))
        ;

    if (const auto kept = stacks.begin() + (std::ptrdiff_t) stackCount; std::find (stacks.begin(), kept, stack) == kept)
    {
        if (stackCount < stacks.size())
            stacks[stackCount++] = stack;
        else
            overflowed = true;
    }

    busy.clear (std::memory_order_release);
}
