#pragma once

#include <string>
#include <vector>

// Which code took the locks a watched thread took. Each distinct call stack
// is kept as it happens; after the run the taker of each is named from the
// debug information: the first caller that is not itself a lock or a scoped
// guard of one. A taker in our own sources is ours; one in JUCE (a
// wrapper's callback lock, a parameter's listener lock, the message-thread
// check) or in the C++ library is not.
namespace LockTakers
{
    // Records the calling thread's stack; called from the lock wrapper with
    // counting off.
    void note();

    // "function (file:line)" of every taker, or of those in our own sources.
    std::vector<std::string> named (bool oursOnly);
}
