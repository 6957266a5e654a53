#pragma once

#include <cstddef>

// Blackman-windowed sinc interpolation tables for the 8-, 16- and 32-tap
// qualities (1, 2, 3), with 512 phases between two samples.
//
// Every delay element uses the same tables, so they are built once per
// process, on first use, and shared. They are stored phase-major with the taps
// of one phase reversed: the taps for a read at integer position i are then
// weights for buffer[i - taps + 1] ... buffer[i], in ascending memory order.
class InterpolationTables
{
public:
    static constexpr int phases = 512;
    static constexpr int maxTaps = 32;

    // Inline, so that the delay kernels' calls for every block cost a test,
    // not a call.
    static const InterpolationTables& get()
    {
        static const InterpolationTables tables;
        return tables;
    }

    static constexpr int tapsForQuality (unsigned quality) noexcept { return 4 << quality; }

    // Weight of table entry `entry` (entry = tap * 512 + phase) of the table
    // with `taps` taps; the centre entry (taps * 256) is 1.
    static double weight (int taps, int entry);

    // The reversed taps of one phase for quality 1..3.
    const double* row (unsigned quality, int phase) const noexcept
    {
        return data + offsetForQuality (quality) + (std::size_t) phase * (std::size_t) tapsForQuality (quality);
    }

private:
    InterpolationTables();

    static constexpr std::size_t offsetForQuality (unsigned quality) noexcept
    {
        return quality == 1 ? 0 : quality == 2 ? std::size_t (8 * phases) : std::size_t (24 * phases);
    }

    alignas (64) double data[(8 + 16 + 32) * phases];
};
