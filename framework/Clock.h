#pragma once

// A tempo clock driven sample by sample from the processing frame. While the
// host transport runs it ticks once per beat (quarter note); the frame splits
// the block at every tick and may hand the tick to the core.
class Clock
{
public:
    double getSampleRate() const noexcept { return sampleRate; }
    double getTempo() const noexcept { return tempo; }
    double getPositionInQuarters() const noexcept { return position; }
    bool isRunning() const noexcept { return running; }
    bool hasChanged() const noexcept { return changed; }

    void setSampleRate (double newRate) noexcept;
    void setTempo (double bpm) noexcept;
    void setPosition (double quarters) noexcept;
    void start (double quarters) noexcept;
    void stop() noexcept;

    // Moves the clock on by one sample; true when a beat boundary was crossed.
    bool advance() noexcept;

    // Whether the last tick is of interest to the core (every beat is).
    bool isEventForCore() const noexcept { return lastTickForCore; }

private:
    double sampleRate = 0.0;
    double tempo = 120.0;
    double position = 0.0;
    bool running = false;
    bool changed = true;
    bool lastTickForCore = false;
};
