#pragma once

#include <cstdint>

class Clock;

// The interface of the signal-processing engine behind an effect of the
// product line. It is owned and driven by CorvelleEffect (which names it
// CorvelleEffect::Core) and knows nothing of JUCE, so engines build and test
// without the plug-in. What engines share in implementing it lives in small
// classes of its own: ParameterInbox, MeterHandOver and PresetFade.
class CorvelleEffectCore
{
public:
    // Applies the preset whose change is pending; called by the engine at the
    // quietest point of the preset-change fade.
    struct PresetChangeTarget
    {
        virtual ~PresetChangeTarget() = default;
        virtual void applyPendingPresetChange() = 0;
    };

    virtual ~CorvelleEffectCore() = default;

    // Starts the preset-change fade: fade out, hold silence, apply, fade in.
    virtual void beginPresetChange() = 0;

    // Hand-over from any thread, without locks: the engine takes what was
    // posted at the start of its next 32-sample block (and when it is
    // prepared), the latest value of each index once.
    virtual void postParameter (uint32_t index, float normalisedValue) noexcept = 0;
    virtual void postQuality (unsigned quality) noexcept = 0;
    virtual void postPresetChange() noexcept = 0;

    // Forgets the signal: afterwards the engine sounds as if it had just been
    // prepared, with the settings it has now.
    virtual void reset() = 0;
    virtual void prepare (double sampleRate, int maximumBlockSize) = 0;
    virtual void setParameter (uint32_t index, float normalisedValue) = 0;
    virtual void setTempo (double beatsPerMinute) = 0;
    virtual void setQuality (unsigned quality) = 0;
    virtual void clockEvent (int clockIndex, const Clock& clock) = 0;
    virtual int getLatency() const = 0;

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
