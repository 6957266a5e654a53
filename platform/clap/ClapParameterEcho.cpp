#include "ClapParameterEcho.h"

ClapParameterEcho::ClapParameterEcho (int count, std::function<void()> flushRequest, std::function<bool()> audioThreadCheck)
    : numParameters (count), slots (std::make_unique<Slot[]> ((size_t) count)), requestFlush (std::move (flushRequest)),
      isAudioThread (std::move (audioThreadCheck))
{
}

void ClapParameterEcho::note (int index, uint32_t what)
{
    const auto thread = std::this_thread::get_id();

    if (index < 0 || index >= numParameters || thread == quietThread.load())
        return;

    const bool processing = thread == processingThread.load() || (isAudioThread && isAudioThread());

    if (processing)
        what |= notRecorded;

    slots[(size_t) index].pending.fetch_or (what, std::memory_order_release);

    // Inside process() or flush() the host hears of it at the end of the
    // call; a request from its audio thread is not allowed anyway.
    if (! processing && requestFlush)
        requestFlush();
}

void ClapParameterEcho::audioProcessorParameterChanged (juce::AudioProcessor*, int index, float value)
{
    if (index >= 0 && index < numParameters)
        slots[(size_t) index].value.store (value, std::memory_order_relaxed);

    note (index, valueChanged);
}

void ClapParameterEcho::audioProcessorParameterChangeGestureBegin (juce::AudioProcessor*, int index)
{
    note (index, gestureBegun);
}

void ClapParameterEcho::audioProcessorParameterChangeGestureEnd (juce::AudioProcessor*, int index)
{
    note (index, gestureEnded);
}

void ClapParameterEcho::writeTo (const clap_output_events_t& out, uint32_t time)
{
    for (int index = 0; index < numParameters; ++index)
    {
        auto& slot = slots[(size_t) index];
        const auto pending = slot.pending.exchange (0, std::memory_order_acquire);

        if (pending == 0)
            continue;

        const auto header = [&] (uint16_t type, uint32_t size)
        {
            return clap_event_header_t { size, time, CLAP_CORE_EVENT_SPACE_ID, type,
                                         (pending & notRecorded) != 0 ? (uint32_t) CLAP_EVENT_DONT_RECORD : 0u };
        };

        clap_event_param_gesture_t gesture { header (CLAP_EVENT_PARAM_GESTURE_BEGIN, sizeof (gesture)), (clap_id) index };

        if ((pending & gestureBegun) != 0)
            out.try_push (&out, &gesture.header);

        if ((pending & valueChanged) != 0)
        {
            const clap_event_param_value_t value { header (CLAP_EVENT_PARAM_VALUE, sizeof (value)), (clap_id) index, nullptr,
                                                   -1, -1, -1, -1, (double) slot.value.load (std::memory_order_relaxed) };
            out.try_push (&out, &value.header);
        }

        if ((pending & gestureEnded) != 0)
        {
            gesture.header.type = CLAP_EVENT_PARAM_GESTURE_END;
            out.try_push (&out, &gesture.header);
        }
    }
}
