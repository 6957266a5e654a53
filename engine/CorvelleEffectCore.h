#pragma once

#include <cstdint>

class Clock;

// The interface of the signal-processing engine behind an effect of the
// product line. It is owned and driven by CorvelleEffect (which names it
// CorvelleEffect::Core) and knows nothing of JUCE, so engines build and test
// without the plug-in. Settings reach an engine only through its inbox, from
// any thread and without a lock; what engines share in implementing it lives
// in small classes of its own: ParameterInbox, MeterHandOver and PresetFade.
class CorvelleEffectCore
{
public:
    // Told at the quietest point of the preset-change fade; it posts the
    // pending preset's values, which the engine takes there and then.
    struct PresetChangeTarget
    {
        virtual ~PresetChangeTarget() = default;
        virtual void applyPendingPresetChange() = 0;
    };

    virtual ~CorvelleEffectCore() = default;

    // Hand-over from any thread, without locks: the engine takes what was
    // posted at the start of its next 32-sample block (and when it is
    // prepared), the latest value of each index once and in one go. A preset
    // change starts the fade: fade out, hold silence, apply, fade in.
    virtual void postParameter (uint32_t index, float normalisedValue) noexcept = 0;
    virtual void postQuality (unsigned quality) noexcept = 0;
    virtual void postPresetChange() noexcept = 0;

    // Forgets the signal: afterwards the engine sounds as if it had just been
    // prepared, with the settings it has now.
    virtual void reset() = 0;
    virtual void prepare (double sampleRate, int maximumBlockSize) = 0;
    virtual int getLatency() const = 0;

    // Tempo and clock ticks, for engines that follow the host's time; the
    // others keep these defaults.
    virtual void setTempo (double /*beatsPerMinute*/) {}
    virtual void clockEvent (int /*clockIndex*/, const Clock&) {}

    // Stereo render; the output pointers may equal the input pointers.
    virtual void process (const float* const* inputs, float* const* outputs, int numSamples) = 0;

    // Mono render in place over channels[0].
    virtual void processMono (float* const* channels, int numSamples) = 0;

    virtual void setPresetChangeTarget (PresetChangeTarget* target) noexcept = 0;
    virtual bool isPresetFadeActive() const noexcept = 0;

    // Meter hand-over to the editor (see MeterHandOver).
    virtual void requestMeters() noexcept = 0;
    virtual bool takeMeters (float& left, float& right) noexcept = 0;
};
