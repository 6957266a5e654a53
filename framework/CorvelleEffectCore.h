#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>

class Clock;

// The signal-processing engine behind an effect of the product line. It is
// owned and driven by CorvelleEffect (which names it CorvelleEffect::Core) and
// knows nothing of JUCE, so engines build and test without the plug-in.
//
// Besides the processing interface the base carries what every engine shares:
// the meter table and the hand-over of two meter levels to the editor, and the
// state of the short mute-hold-restore fade that surrounds a preset change.
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

    CorvelleEffectCore();
    virtual ~CorvelleEffectCore() = default;

    CorvelleEffectCore (const CorvelleEffectCore&) = delete;
    CorvelleEffectCore& operator= (const CorvelleEffectCore&) = delete;

    // Starts the preset-change fade: fade out, hold silence, apply, fade in.
    virtual void beginPresetChange();

    virtual void reset() = 0;
    virtual void prepare (double sampleRate, int maximumBlockSize) = 0;
    virtual void setParameter (uint32_t index, float normalisedValue) = 0;
    virtual void setTempo (double beatsPerMinute);
    virtual void setQuality (unsigned quality) = 0;
    virtual void clockEvent (int clockIndex, const Clock& clock);
    virtual int getLatency() const = 0;

    // Stereo render; the output pointers may equal the input pointers.
    virtual void process (const float* const* inputs, float* const* outputs, int numSamples) = 0;

    // Mono render in place over channels[0].
    virtual void processMono (float* const* channels, int numSamples) = 0;

    // The engine's own lock; always taken after the effect's processing lock.
    std::recursive_mutex& getLock() noexcept { return lock; }

    void setPresetChangeTarget (PresetChangeTarget* target) noexcept { presetChangeTarget = target; }

    // Meter hand-over. The editor asks for a reading, the engine publishes the
    // held peaks at the end of every process call, and the reader collects them.
    void requestMeters() noexcept;
    bool takeMeters (float& left, float& right) noexcept;
    void peekMeters (float& left, float& right) const noexcept;

    bool isPresetFadeActive() const noexcept { return fadeActive; }

    static constexpr int meterTableSize = 400;

    // Maps an output sample in -2..2 (index = sample * 100 + 200) to 0..1.
    static const std::array<double, meterTableSize>& getMeterTable();

protected:
    // Stores both levels clamped to 0..1; real-time safe (spin lock).
    void publishMeters (double left, double right) noexcept;

    // One output sample's step of the preset-change fade.
    void advancePresetFade (double sampleRate) noexcept;

    void applyPendingPresetChange();

    // Preset-change fade state.
    bool fadeActive = false;
    bool fadingOut = false;
    bool fadingIn = false;
    bool holding = false;
    bool fadeIdle = true;
    double fadeGain = 1.0;
    double fadeTarget = 1.0;
    double fadeCoefficient = 0.002;
    int holdCounter = 0;

private:
    std::recursive_mutex lock;
    PresetChangeTarget* presetChangeTarget = nullptr;

    void lockMeters() const noexcept;
    void unlockMeters() const noexcept;

    mutable std::atomic_flag meterSpin = ATOMIC_FLAG_INIT;
    float meterLeft = 0.0f, meterRight = 0.0f;
    std::atomic<int> pendingReaders { 0 };
    std::atomic<bool> metersReady { false };
};
