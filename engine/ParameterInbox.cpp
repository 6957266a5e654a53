#include "ParameterInbox.h"

#include <algorithm>

void ParameterInbox::postParameter (uint32_t index, float normalisedValue) noexcept
{
    if (index >= maxIndices)
        return;

    values[index].store (normalisedValue, std::memory_order_relaxed);
    postedIndices.fetch_or (uint64_t (1) << index, std::memory_order_release);
}

void ParameterInbox::postQuality (unsigned quality) noexcept
{
    postedQuality.store ((int) std::min (quality, 255u), std::memory_order_release);
}

void ParameterInbox::postPresetChange() noexcept
{
    presetChangePosted.store (true, std::memory_order_release);
}
