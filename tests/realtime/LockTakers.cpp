#include "LockTakers.h"

#include <dlfcn.h>
#include <execinfo.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <map>
#include <set>

namespace
{
// Frames to skip: note() and the lock wrapper that called it.
constexpr int skipped = 2, depth = 24;

struct Stack
{
    std::atomic<std::uint64_t> key { 0 };
    std::atomic<int> frames { 0 };
    std::array<void*, depth> at {};
};

std::array<Stack, 256> stacks;
std::atomic<bool> overflowed { false };

std::uint64_t keyOf (void* const* frames, int count)
{
    std::uint64_t key = 1469598103934665603ull;

    for (int i = 0; i < count; ++i)
        key = (key ^ (std::uint64_t) (std::uintptr_t) frames[i]) * 1099511628211ull;

    return key != 0 ? key : 1;
}

struct Frame
{
    std::string function, file;
};

// addr2line over each module's addresses, one run per module.
std::vector<std::vector<Frame>> symbolise (const std::vector<std::vector<void*>>& stackList)
{
    char self[4096] {};
    const auto selfLength = readlink ("/proc/self/exe", self, sizeof (self) - 1);
    Dl_info mainInfo {};
    dladdr ((void*) &symbolise, &mainInfo);

    std::map<std::string, std::vector<std::pair<std::size_t, std::size_t>>> wanted;
    std::map<std::string, std::vector<std::uintptr_t>> offsets;
    std::vector<std::vector<Frame>> result;

    for (std::size_t s = 0; s < stackList.size(); ++s)
    {
        result.emplace_back (stackList[s].size(), Frame { "??", "??" });

        for (std::size_t f = 0; f < stackList[s].size(); ++f)
        {
            Dl_info info {};

            if (dladdr (stackList[s][f], &info) == 0 || info.dli_fname == nullptr)
                continue;

            std::string module = info.dli_fbase == mainInfo.dli_fbase && selfLength > 0 ? std::string (self, (size_t) selfLength)
                                                                                          : std::string (info.dli_fname);
            wanted[module].push_back ({ s, f });
            // A return address; the call is the byte before it.
            offsets[module].push_back ((std::uintptr_t) stackList[s][f] - (std::uintptr_t) info.dli_fbase - 1);
        }
    }

    for (const auto& [module, places] : wanted)
    {
        std::string command = "addr2line -f -C -e '" + module + "'";

        for (auto offset : offsets[module])
        {
            char text[32];
            std::snprintf (text, sizeof (text), " 0x%lx", (unsigned long) offset);
            command += text;
        }

        auto* pipe = popen (command.c_str(), "r");

        if (pipe == nullptr)
            continue;

        char line[4096];

        for (const auto& [s, f] : places)
        {
            if (std::fgets (line, sizeof (line), pipe) == nullptr)
                break;

            result[s][f].function = std::string (line, std::char_traits<char>::length (line) - 1);

            if (std::fgets (line, sizeof (line), pipe) == nullptr)
                break;

            result[s][f].file = std::string (line, std::char_traits<char>::length (line) - 1);
        }

        pclose (pipe);
    }

    return result;
}

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

std::vector<Frame> takers()
{
    std::vector<std::vector<void*>> recorded;

    for (const auto& stack : stacks)
        if (stack.key.load() != 0)
            recorded.emplace_back (stack.at.begin(), stack.at.begin() + stack.frames.load (std::memory_order_acquire));

    std::vector<Frame> result;

    for (const auto& frames : symbolise (recorded))
        for (const auto& frame : frames)
            if (! isLock (frame.function))
            {
                result.push_back (frame);
                break;
            }

    if (overflowed)
        result.push_back ({ "more distinct lock stacks than were kept", "" });

    return result;
}

// "function (file:line)" of each taker, once.
std::vector<std::string> named (bool oursOnly)
{
    std::set<std::string> found;

    for (const auto& taker : takers())
        if (! oursOnly || isOurs (taker.file))
            found.insert (taker.function + " (" + taker.file + ")");

    return { found.begin(), found.end() };
}
}

void LockTakers::note()
{
    void* frames[depth + skipped];
    const int count = backtrace (frames, depth + skipped) - skipped;

    if (count <= 0)
        return;

    const auto key = keyOf (frames + skipped, count);

    for (std::size_t i = 0, at = key % stacks.size(); i < stacks.size(); ++i, at = (at + 1) % stacks.size())
    {
        auto expected = stacks[at].key.load();

        // A failed exchange leaves the key that is there in `expected`.
        if (expected == 0 && stacks[at].key.compare_exchange_strong (expected, key))
        {
            std::copy (frames + skipped, frames + skipped + count, stacks[at].at.begin());
            stacks[at].frames.store (count, std::memory_order_release);
            return;
        }

        if (expected == key)
            return;
    }

    overflowed = true;
}

std::vector<std::string> LockTakers::ours() { return named (true); }

std::vector<std::string> LockTakers::all() { return named (false); }
