#pragma once

// Frequency, gain and bandwidth of a peaking equaliser and the coefficients
// made from them. A new setting is approached in fixed steps per sample, so a
// knob turn sweeps the filter instead of jumping.
//
// The coefficients are computed against a rate of twice the sample rate,
// which places every frequency an octave lower than its nominal value; the
// knob scales were drawn for that.
class BiquadTuning
{
public:
    struct Coefficients
    {
        double b0 = 1.0, b1 = 0.0, b2 = 0.0, a1 = 0.0, a2 = 0.0;
    };

    BiquadTuning (double frequency, double gainDb, double bandwidthOctaves) noexcept;

    // Jumps to the settings, without gliding, for the given sample rate.
    void prepare (double sampleRate, double frequency, double gainDb, double bandwidthOctaves) noexcept;

    void setFrequency (double hz) noexcept       { frequency.glideTo (hz, 1.0); }
    void setGain (double db) noexcept            { gain.glideTo (db, 0.01); }
    void setBandwidth (double octaves) noexcept  { bandwidth.glideTo (octaves, 0.001); }

    bool isGliding() const noexcept { return frequency.gliding || gain.gliding || bandwidth.gliding; }

    // One sample's step of the glides; recomputes the coefficients if a
    // setting moved.
    void advance() noexcept;

    const Coefficients& getCoefficients() const noexcept { return coefficients; }

    double getFrequency() const noexcept { return frequency.current; }
    double getGain() const noexcept      { return gain.current; }
    double getBandwidth() const noexcept { return bandwidth.current; }

private:
    struct Setting
    {
        double current, target, step = 0.0;
        bool gliding = false;

        void jumpTo (double value) noexcept;
        void glideTo (double value, double stepSize) noexcept;
        bool advance() noexcept;
    };

    void updateCoefficients() noexcept;

    Setting frequency, gain, bandwidth;
    double filterRate = 88200.0;
    Coefficients coefficients;
};
