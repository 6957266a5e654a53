#include "CorvelleEffectCore.h"

#include <algorithm>
#include <cmath>
#include <thread>

CorvelleEffectCore::CorvelleEffectCore() = default;

void CorvelleEffectCore::beginPresetChange()
{
    const std::lock_guard<std::recursive_mutex> guard (lock);
    fadeActive = true;
    fadingOut = true;
    holding = false;
    fadeTarget = 0.0;
    holdCounter = 0;
}

void CorvelleEffectCore::setTempo (double) {}

void CorvelleEffectCore::clockEvent (int, const Clock&) {}

const std::array<double, CorvelleEffectCore::meterTableSize>& CorvelleEffectCore::getMeterTable()
{
    // A level scale from -40 dB (the first non-zero entry, 0.01) to +6 dB.
    static const auto table = []
    {
        std::array<double, meterTableSize> t {};

        for (int i = 0; i < meterTableSize; ++i)
        {
            const double magnitude = std::abs ((i - 200) * 0.01);
            const double db = magnitude > 0.0 ? 20.0 * std::log10 (magnitude) : -1000.0;
            t[(size_t) i] = std::clamp ((db + 40.0) / 46.0, 0.0, 1.0);
        }

        return t;
    }();

    return table;
}

void CorvelleEffectCore::publishMeters (double left, double right) noexcept
{
    lockMeters();
    meterLeft = (float) std::clamp (left, 0.0, 1.0);
    meterRight = (float) std::clamp (right, 0.0, 1.0);
    unlockMeters();

    if (pendingReaders.load (std::memory_order_relaxed) > 0 && --pendingReaders == 0)
        metersReady.store (true, std::memory_order_release);
}

void CorvelleEffectCore::requestMeters() noexcept
{
    ++pendingReaders;
}

bool CorvelleEffectCore::takeMeters (float& left, float& right) noexcept
{
    if (! metersReady.exchange (false, std::memory_order_acq_rel))
        return false;

    peekMeters (left, right);
    return true;
}

void CorvelleEffectCore::peekMeters (float& left, float& right) const noexcept
{
    lockMeters();
    left = meterLeft;
    right = meterRight;
    unlockMeters();
}

// Twenty quick retries, then yield between retries: the holder only copies two floats.
void CorvelleEffectCore::lockMeters() const noexcept
{
    for (int attempt = 0; meterSpin.test_and_set (std::memory_order_acquire); ++attempt)
        if (attempt >= 20)
            std::this_thread::yield();
}

void CorvelleEffectCore::unlockMeters() const noexcept
{
    meterSpin.clear (std::memory_order_release);
}

void CorvelleEffectCore::advancePresetFade (double sampleRate) noexcept
{
    fadeGain = fadeGain - (fadeGain - fadeTarget) * fadeCoefficient + 1e-20;

    if (fadingOut && fadeGain < 0.001)
    {
        fadeGain = fadeTarget = 0.0;
        fadingOut = false;
        fadeIdle = false;
        holding = true;
        holdCounter = (int) (sampleRate / 44100.0 * 4000.0);
        applyPendingPresetChange();
    }

    if (holding && holdCounter >= 1)
    {
        if (--holdCounter == 0)
        {
            fadeTarget = 1.0;
            holding = false;
            fadingIn = true;
        }
    }

    if (fadingIn && fadeGain > 0.99)
    {
        fadeActive = holding = fadingIn = false;
        fadeGain = fadeTarget = 1.0;
        fadeIdle = true;
    }
}

void CorvelleEffectCore::applyPendingPresetChange()
{
    if (presetChangeTarget != nullptr)
        presetChangeTarget->applyPendingPresetChange();
}
