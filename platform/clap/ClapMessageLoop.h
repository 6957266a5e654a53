#pragma once

#include <memory>

// JUCE's message loop, which runs the processor's timers, kept going for as
// long as one of these lives: on Linux on a thread shared by every instance
// (hosts give plug-ins no loop of their own to run it), elsewhere on the
// host's main thread, whose message pump it joins.
class ClapMessageLoop
{
public:
    ClapMessageLoop();
    ~ClapMessageLoop();

private:
    struct Running;
    std::unique_ptr<Running> running;
};
