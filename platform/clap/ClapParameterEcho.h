#pragma once

#include <clap/events.h>
#include <juce_audio_processors/juce_audio_processors.h>

#include <atomic>
#include <functional>
#include <memory>

// Tells a CLAP host about parameter changes it did not make itself: the
// editor's knob turns with their gestures, controllers through the MIDI map
// and preset changes. The processor reports them on whatever thread made
// them; they are noted in atomics and written out as events by the next
// process() or flush(). A change made outside those calls asks the host for
// a flush, so that it is heard while the host is not processing.
class ClapParameterEcho : public juce::AudioProcessorListener
{
public:
    ClapParameterEcho (int numParameters, std::function<void()> requestFlush);

    // While one lives on a thread, the host is inside process() or flush()
    // there: changes made on it (controllers, program changes) are written
    // out at the end of the call, marked not to be recorded, and no flush is
    // requested.
    struct ProcessingScope
    {
        ProcessingScope();
        ~ProcessingScope();
    };

    // While one lives on a thread, changes made there are not reported (a
    // restored state, which the host rescans as a whole).
    struct QuietScope
    {
        QuietScope();
        ~QuietScope();
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
};
