#pragma once

#include <clap/ext/timer-support.h>
#include <clap/host.h>

#include <functional>
#include <memory>

// JUCE's message loop, which runs the processor's timers, the editor and
// every job posted to the message thread, kept going for as long as one of
// these lives. On Linux it runs on the host's main thread from a timer of
// the host's when the host offers timers (as hosts drive a VST2 plug-in's
// loop with idle calls), and otherwise on a thread shared by every instance.
// Elsewhere the host's main thread pumps it through the system's own loop.
// Made and destroyed on the host's main thread.
class ClapMessageLoop
{
public:
    explicit ClapMessageLoop (const clap_host_t& host);
    ~ClapMessageLoop();

    // The host's timer: what is pending on the loop is run now.
    void onTimer (clap_id timerId);

    // True when the loop runs on the host's main thread.
    bool isHostDriven() const noexcept { return timerId != CLAP_INVALID_ID; }

    // Runs `job` on the message thread, waiting for it when that is another
    // thread than the caller's.
    static void runOnMessageThread (const std::function<void()>& job);

    // How often the host is asked to call, in milliseconds.
    static constexpr uint32_t timerPeriodMs = 10;

private:
    struct Running;
    const clap_host_t& host;
    const clap_host_timer_support_t* timers = nullptr;
    clap_id timerId = CLAP_INVALID_ID;
    std::unique_ptr<Running> running;
};
