#include "engine/BiquadTuning.h"

#include <algorithm>
#include <cmath>

void BiquadTuning::Setting::jumpTo (double value) noexcept
{
    current = target = value;
    gliding = false;
}

void BiquadTuning::Setting::glideTo (double value, double stepSize) noexcept
{
    target = value;
    step = value > current ? stepSize : -stepSize;
    gliding = value != current;
}

bool BiquadTuning::Setting::advance() noexcept
{
    if (! gliding)
        return false;

    current += step;

    if (step > 0.0 ? current >= target : current <= target)
    {
        current = target;
        gliding = false;
    }

    return true;
}

BiquadTuning::BiquadTuning (double f, double g, double b) noexcept
    : frequency { f, f }, gain { g, g }, bandwidth { b, b }
{
    updateCoefficients();
}

void BiquadTuning::prepare (double sampleRate, double f, double g, double b) noexcept
{
    filterRate = 2.0 * sampleRate;
    frequency.jumpTo (f);
    gain.jumpTo (g);
    bandwidth.jumpTo (b);
    updateCoefficients();
}

void BiquadTuning::advance() noexcept
{
    // Every setting steps, whether or not another one moved.
    bool moved = frequency.advance();
    moved = gain.advance() || moved;
    moved = bandwidth.advance() || moved;

    if (moved)
        updateCoefficients();
}

void BiquadTuning::updateCoefficients() noexcept
{
    const double A = std::pow (10.0, gain.current * 0.025);
    const double w0 = 6.283185307179586 * frequency.current / filterRate;
    const double sinW0 = std::sin (w0);
    const double cosW0 = std::cos (w0);

    // Close to the Nyquist frequency the bandwidth in octaves runs away; the
    // cap keeps the section finite there (sinh overflows above about 710).
    const double spread = std::min (0.34657359027997264 * bandwidth.current * w0 / sinW0, 700.0);
    const double alpha = sinW0 * std::sinh (spread);

    const double a0 = 1.0 + alpha / A;
    coefficients.b0 = (1.0 + alpha * A) / a0 + 1e-20;
    coefficients.b1 = -2.0 * cosW0 / a0 + 1e-20;
    coefficients.b2 = (1.0 - alpha * A) / a0 + 1e-20;
    coefficients.a1 = -2.0 * cosW0 / a0 + 1e-20;
    coefficients.a2 = (1.0 - alpha / A) / a0 + 1e-20;
}
