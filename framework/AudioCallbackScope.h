#pragma once

#include <juce_events/juce_events.h>

// Entered by the audio callback: a thread other than the message thread that
// has once run it stays known as an audio thread (hosts set parameters there
// between callbacks). Whatever such a thread changes posts nothing to the
// message thread: parameters and the controller map leave flags that the
// plug-in's poll on the message thread picks up. A callback run on the
// message thread (offline renders, tests) behaves as the message thread.
class AudioCallbackScope
{
public:
    AudioCallbackScope()
    {
        // Asked once per thread: JUCE's answer takes a lock.
        thread_local const bool isMessageThread = juce::MessageManager::existsAndIsCurrentThread();
        audioThread = audioThread || ! isMessageThread;
    }

    AudioCallbackScope (const AudioCallbackScope&) = delete;
    AudioCallbackScope& operator= (const AudioCallbackScope&) = delete;

    static bool isActive() noexcept { return audioThread; }

private:
    static inline thread_local bool audioThread = false;
};
