#pragma once

#include <juce_events/juce_events.h>

// Marks the calling thread as inside the audio callback for the scope's
// lifetime; a thread other than the message thread that has once run the
// callback stays known as an audio thread (hosts set parameters there between
// callbacks). Whatever such a thread changes posts nothing to the message
// thread: parameters and the controller map leave flags that the plug-in's
// poll on the message thread picks up.
class AudioCallbackScope
{
public:
    AudioCallbackScope()
    {
        // Asked once per thread: JUCE's answer takes a lock.
        thread_local const bool isMessageThread = juce::MessageManager::existsAndIsCurrentThread();
        audioThread = audioThread || ! isMessageThread;
        ++depth;
    }

    ~AudioCallbackScope() { --depth; }

    AudioCallbackScope (const AudioCallbackScope&) = delete;
    AudioCallbackScope& operator= (const AudioCallbackScope&) = delete;

    static bool isActive() noexcept { return depth > 0 || audioThread; }

private:
    static inline thread_local int depth = 0;
    static inline thread_local bool audioThread = false;
};
