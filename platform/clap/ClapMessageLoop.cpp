// JUCE's message thread for plug-ins talks to the X server itself.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1

#include "ClapMessageLoop.h"

#include <juce_gui_basics/juce_gui_basics.h>
#include <juce_audio_plugin_client/utility/juce_LinuxMessageThread.h>

#include <optional>

// JUCE shuts down after the loop stops: members go in reverse order.
struct ClapMessageLoop::Running
{
    explicit Running (bool hostDriven)
    {
       #if JUCE_LINUX || JUCE_BSD
        if (hostDriven)
            hostLoop.emplace();
       #else
        juce::ignoreUnused (hostDriven);
       #endif
    }

   #if JUCE_LINUX || JUCE_BSD
    // The last instance's loop is gone with the shared thread; JUCE then
    // shuts down here, on the host's main thread, which must be the message
    // thread for that.
    ~Running()
    {
        hostLoop.reset();
        const bool isLast = sharedThread->getReferenceCount() == 1;
        sharedThread.reset();

        if (isLast)
            juce::MessageManager::getInstance()->setCurrentThreadAsMessageThread();
    }
   #endif

    juce::ScopedJuceInitialiser_GUI juce;
   #if JUCE_LINUX || JUCE_BSD
    std::optional<juce::SharedResourcePointer<juce::MessageThread>> sharedThread { std::in_place };
    // Stops the shared thread and makes the host's main thread the message
    // thread while any instance is driven by its host.
    std::optional<juce::SharedResourcePointer<juce::HostDrivenEventLoop>> hostLoop;
   #endif
};

ClapMessageLoop::ClapMessageLoop (const clap_host_t& h) : host (h)
{
   #if JUCE_LINUX || JUCE_BSD
    if (host.get_extension != nullptr)
        timers = static_cast<const clap_host_timer_support_t*> (host.get_extension (&host, CLAP_EXT_TIMER_SUPPORT));

    if (timers != nullptr && timers->register_timer != nullptr && timers->unregister_timer != nullptr
        && ! timers->register_timer (&host, timerPeriodMs, &timerId))
        timerId = CLAP_INVALID_ID;
   #endif

    running = std::make_unique<Running> (isHostDriven());
}

ClapMessageLoop::~ClapMessageLoop()
{
    if (isHostDriven())
        timers->unregister_timer (&host, timerId);

    running.reset();
}

void ClapMessageLoop::onTimer (clap_id id)
{
   #if JUCE_LINUX || JUCE_BSD
    if (id == timerId && running != nullptr && running->hostLoop.has_value())
        (*running->hostLoop)->processPendingEvents();
   #else
    juce::ignoreUnused (id);
   #endif
}

void ClapMessageLoop::runOnMessageThread (const std::function<void()>& job)
{
    auto* manager = juce::MessageManager::getInstance();

    if (manager->isThisTheMessageThread())
        job();
    else
        manager->callFunctionOnMessageThread ([] (void* context) -> void*
        {
            (*static_cast<const std::function<void()>*> (context))();
            return nullptr;
        }, const_cast<std::function<void()>*> (&job));
}
