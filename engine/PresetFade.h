#pragma once

// The short mute around a preset change, one output sample at a time: the
// gain falls to silence, the new preset is applied at the quiet point,
// silence is held while the engine settles (4000 samples at 44100 Hz), and
// the gain rises back to one.
class PresetFade
{
public:
    void begin() noexcept
    {
        active = true;
        fadingOut = true;
        holding = false;
        target = 0.0;
        holdCounter = 0;
    }

    void setCoefficient (double c) noexcept { coefficient = c; }

    bool isActive() const noexcept { return active; }
    double getGain() const noexcept { return gain; }

    // Advances one sample; true at the quiet point, where the caller applies
    // the new preset.
    bool advance (double sampleRate) noexcept
    {
        bool quietPoint = false;
        gain = gain - (gain - target) * coefficient + 1e-20;

        if (fadingOut && gain < 0.001)
        {
            gain = target = 0.0;
            fadingOut = false;
            holding = true;
            holdCounter = (int) (sampleRate / 44100.0 * 4000.0);
            quietPoint = true;
        }

        if (holding && holdCounter >= 1)
        {
            if (--holdCounter == 0)
            {
                target = 1.0;
                holding = false;
                fadingIn = true;
            }
        }

        if (fadingIn && gain > 0.99)
        {
            active = holding = fadingIn = false;
            gain = target = 1.0;
        }

        return quietPoint;
    }

private:
    bool active = false, fadingOut = false, fadingIn = false, holding = false;
    double gain = 1.0, target = 1.0, coefficient = 0.002;
    int holdCounter = 0;
};
