#pragma once

#include <clap/events.h>
#include <juce_audio_processors/juce_audio_processors.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

// Tells a CLAP host about parameter changes it did not make itself: the
// editor's knob turns with their gestures, controllers through the MIDI map
// and preset changes. The processor reports them on whatever thread made
// them; they are noted in atomics and written out as events by the next
// process() or flush(). A change made outside those calls asks the host for
// a flush, so that it is heard while the host is not processing.
class ClapParameterEcho : public juce::AudioProcessorListener
{
public:
    // `isAudioThread`, when the host can tell, answers whether the calling
    // thread is its audio thread, inside process() or not.
    ClapParameterEcho (int numParameters, std::function<void()> requestFlush, std::function<bool()> isAudioThread);

    // While one lives, the host is inside process() or flush() on the thread
    // that made it: changes made there (controllers, program changes) are
    // written out at the end of the call, marked not to be recorded, and no
    // flush is requested.
    class ProcessingScope
    {
    public:
        explicit ProcessingScope (ClapParameterEcho& e) : echo (e) { echo.processingThread.store (std::this_thread::get_id()); }
        ~ProcessingScope() { echo.processingThread.store ({}); }

    private:
        ClapParameterEcho& echo;
    };

    // While one lives, changes made on its thread are not reported (a
    // restored state, which the host rescans as a whole).
    class QuietScope
    {
    public:
        explicit QuietScope (ClapParameterEcho& e) : echo (e) { echo.quietThread.store (std::this_thread::get_id()); }
        ~QuietScope() { echo.quietThread.store ({}); }

    private:
        ClapParameterEcho& echo;
    };

    // Per parameter, in order: gesture begin, the latest value, gesture end.
    // The events are stamped at `time`; what the queue refuses is dropped.
    void writeTo (const clap_output_events_t& out, uint32_t time);

    void audioProcessorParameterChanged (juce::AudioProcessor*, int index, float value) override;
    void audioProcessorParameterChangeGestureBegin (juce::AudioProcessor*, int index) override;
    void audioProcessorParameterChangeGestureEnd (juce::AudioProcessor*, int index) override;
    void audioProcessorChanged (juce::AudioProcessor*, const ChangeDetails&) override {}

private:
    enum Pending : uint32_t
    {
        gestureBegun = 1,
        valueChanged = 2,
        gestureEnded = 4,
        notRecorded = 8
    };

    struct Slot
    {
        std::atomic<uint32_t> pending { 0 };
        std::atomic<float> value { 0.0f };
    };

    void note (int index, uint32_t what);

    const int numParameters;
    const std::unique_ptr<Slot[]> slots;
    const std::function<void()> requestFlush;
    const std::function<bool()> isAudioThread;
    // Thread ids rather than thread-locals: a thread-local of a library
    // loaded at run time is allocated on the thread's first use of it.
    std::atomic<std::thread::id> processingThread {}, quietThread {};
};
