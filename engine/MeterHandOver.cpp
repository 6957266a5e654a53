#include "MeterHandOver.h"

#include <algorithm>
#include <cmath>
#include <cstring>

const std::array<double, MeterHandOver::tableSize>& MeterHandOver::getTable()
{
    // A level scale from -40 dB (the first non-zero entry, 0.01) to +6 dB.
    static const auto table = []
    {
        std::array<double, tableSize> t {};

        for (int i = 0; i < tableSize; ++i)
        {
            const double magnitude = std::abs ((i - 200) * 0.01);
            const double db = magnitude > 0.0 ? 20.0 * std::log10 (magnitude) : -1000.0;
            t[(size_t) i] = std::clamp ((db + 40.0) / 46.0, 0.0, 1.0);
        }

        return t;
    }();

    return table;
}

void MeterHandOver::publish (double left, double right) noexcept
{
    const auto bits = [] (double level)
    {
        const auto f = (float) std::clamp (level, 0.0, 1.0);
        uint32_t word;
        std::memcpy (&word, &f, sizeof (word));
        return (uint64_t) word;
    };

    levels.store (bits (left) | bits (right) << 32, std::memory_order_release);

    if (pendingReaders.load (std::memory_order_relaxed) > 0 && --pendingReaders == 0)
        ready.store (true, std::memory_order_release);
}

void MeterHandOver::request() noexcept
{
    ++pendingReaders;
}

bool MeterHandOver::take (float& left, float& right) noexcept
{
    if (! ready.exchange (false, std::memory_order_acq_rel))
        return false;

    peek (left, right);
    return true;
}

void MeterHandOver::peek (float& left, float& right) const noexcept
{
    const auto word = levels.load (std::memory_order_acquire);
    const auto low = (uint32_t) word, high = (uint32_t) (word >> 32);
    std::memcpy (&left, &low, sizeof (left));
    std::memcpy (&right, &high, sizeof (right));
}
