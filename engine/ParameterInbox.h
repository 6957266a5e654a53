#pragma once

#include <array>
#include <atomic>
#include <cstdint>

// Settings handed to an engine from any thread without a lock: the latest
// value of each index, a quality step and a preset-change request. The
// engine takes them at its next block boundary, on its own thread.
class ParameterInbox
{
public:
    static constexpr uint32_t maxIndices = 64;

    // Any thread. Indices from 64 on are not an engine's and are dropped.
    void postParameter (uint32_t index, float normalisedValue) noexcept;
    void postQuality (unsigned quality) noexcept;
    void postPresetChange() noexcept;

    // The engine's thread: hands each posted item to the engine once.
    template <typename Engine>
    void deliverTo (Engine& engine) noexcept
    {
        if (const int quality = postedQuality.exchange (-1, std::memory_order_acquire); quality >= 0)
            engine.setQuality ((unsigned) quality);

        for (auto indices = postedIndices.exchange (0, std::memory_order_acquire); indices != 0; indices &= indices - 1)
        {
            const auto index = (uint32_t) __builtin_ctzll (indices);
            engine.setParameter (index, values[index].load (std::memory_order_relaxed));
        }

        if (presetChangePosted.exchange (false, std::memory_order_acquire))
            engine.beginPresetChange();
    }

private:
    std::array<std::atomic<float>, maxIndices> values {};
    std::atomic<uint64_t> postedIndices { 0 };
    std::atomic<int> postedQuality { -1 };
    std::atomic<bool> presetChangePosted { false };
};
