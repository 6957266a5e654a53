#pragma once

#include <clap/events.h>
#include <juce_audio_processors/juce_audio_processors.h>

// The host's transport of the block being processed, as the processor asks
// for it. Without a transport (a host that is not playing anything) there is
// no position to give.
class ClapPlayHead : public juce::AudioPlayHead
{
public:
    void setTransport (const clap_event_transport_t* blockTransport) noexcept { transport = blockTransport; }

    juce::Optional<PositionInfo> getPosition() const override
    {
        if (transport == nullptr)
            return {};

        PositionInfo info;
        info.setIsPlaying ((transport->flags & CLAP_TRANSPORT_IS_PLAYING) != 0);
        info.setIsRecording ((transport->flags & CLAP_TRANSPORT_IS_RECORDING) != 0);

        if ((transport->flags & CLAP_TRANSPORT_HAS_TEMPO) != 0)
            info.setBpm (transport->tempo);

        if ((transport->flags & CLAP_TRANSPORT_HAS_BEATS_TIMELINE) != 0)
        {
            info.setPpqPosition ((double) transport->song_pos_beats / (double) CLAP_BEATTIME_FACTOR);
            info.setPpqPositionOfLastBarStart ((double) transport->bar_start / (double) CLAP_BEATTIME_FACTOR);
            info.setBarCount (transport->bar_number);
        }

        if ((transport->flags & CLAP_TRANSPORT_HAS_SECONDS_TIMELINE) != 0)
            info.setTimeInSeconds ((double) transport->song_pos_seconds / (double) CLAP_SECTIME_FACTOR);

        if ((transport->flags & CLAP_TRANSPORT_HAS_TIME_SIGNATURE) != 0)
            info.setTimeSignature (TimeSignature { transport->tsig_num, transport->tsig_denom });

        return info;
    }

private:
    const clap_event_transport_t* transport = nullptr;
};
