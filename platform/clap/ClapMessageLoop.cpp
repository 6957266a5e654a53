// JUCE's message thread for plug-ins talks to the X server itself.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1

#include "ClapMessageLoop.h"

#include <juce_gui_basics/juce_gui_basics.h>
#include <juce_audio_plugin_client/utility/juce_LinuxMessageThread.h>

// The thread stops before JUCE shuts down: members go in reverse order.
struct ClapMessageLoop::Running
{
    juce::ScopedJuceInitialiser_GUI juce;
   #if JUCE_LINUX || JUCE_BSD
    juce::SharedResourcePointer<juce::MessageThread> thread;
   #endif
};

ClapMessageLoop::ClapMessageLoop() : running (std::make_unique<Running>()) {}

ClapMessageLoop::~ClapMessageLoop() = default;
