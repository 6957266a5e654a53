#pragma once

// Marks the calling thread as inside the audio callback for the scope's
// lifetime. Whatever it changes there posts nothing to the message thread:
// parameters and the controller map leave flags that the plug-in's poll on
// the message thread picks up.
class AudioCallbackScope
{
public:
    AudioCallbackScope() noexcept { ++depth; }
    ~AudioCallbackScope() { --depth; }

    AudioCallbackScope (const AudioCallbackScope&) = delete;
    AudioCallbackScope& operator= (const AudioCallbackScope&) = delete;

    static bool isActive() noexcept { return depth > 0; }

private:
    static inline thread_local int depth = 0;
};
