#include "DecayMeasurement.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
    int onsetOf (const float* samples, int numSamples)
    {
        float peak = 0.0f;

        for (int i = 0; i < numSamples; ++i)
            peak = std::max (peak, std::abs (samples[i]));

        for (int i = 0; i < numSamples; ++i)
            if (std::abs (samples[i]) >= peak * 0.1f)
                return i;

        return 0;
    }

    // Least squares slope in dB per sample of the curve from where it first
    // reaches `upperDb` (not before `from`) to where it first falls below
    // `lowerDb`.
    std::optional<double> slopeOver (const std::vector<double>& curve, int from, double upperDb, double lowerDb)
    {
        constexpr int minimumPoints = 4;
        const int size = (int) curve.size();

        int first = from;
        while (first < size && curve[(size_t) first] > upperDb)
            ++first;

        int end = first;
        while (end < size && curve[(size_t) end] >= lowerDb)
            ++end;

        if (end >= size || end - first < minimumPoints)
            return std::nullopt;

        const double count = end - first;
        const double meanX = (count - 1.0) / 2.0;
        double meanY = 0.0;

        for (int i = first; i < end; ++i)
            meanY += curve[(size_t) i];

        meanY /= count;
        double covariance = 0.0, variance = 0.0;

        for (int i = first; i < end; ++i)
        {
            const double dx = (i - first) - meanX;
            covariance += dx * (curve[(size_t) i] - meanY);
            variance += dx * dx;
        }

        const double slope = covariance / variance;
        return slope < 0.0 ? std::optional<double> (slope) : std::nullopt;
    }

    std::optional<double> decayTime (const std::vector<double>& curve, int from, double sampleRate,
                                     double upperDb, double lowerDb)
    {
        if (const auto slope = slopeOver (curve, from, upperDb, lowerDb))
            return -60.0 / (*slope * sampleRate);

        return std::nullopt;
    }

    std::vector<double> toDecibels (const std::vector<double>& energy, double extra)
    {
        std::vector<double> curve (energy.size());
        const double total = energy.front() + extra;

        for (size_t i = 0; i < energy.size(); ++i)
        {
            const double remaining = energy[i] + extra;
            curve[i] = remaining > 0.0 ? 10.0 * std::log10 (remaining / total) : -std::numeric_limits<double>::infinity();
        }

        return curve;
    }
}

std::vector<double> energyDecayCurve (const float* samples, int numSamples, double sampleRate)
{
    std::vector<double> energy ((size_t) std::max (0, numSamples));
    double remaining = 0.0;

    for (int i = numSamples; --i >= 0;)
    {
        remaining += (double) samples[i] * (double) samples[i];
        energy[(size_t) i] = remaining;
    }

    if (energy.empty() || ! (remaining > 0.0))
        return {};

    const auto uncorrected = toDecibels (energy, 0.0);
    const auto slope = slopeOver (uncorrected, 0, -5.0, -25.0);

    if (! slope.has_value())
        return uncorrected;

    const int window = std::clamp ((int) (0.01 * sampleRate), 1, numSamples);
    const double lastPower = energy[(size_t) (numSamples - window)] / window;
    const double samplesPerNeper = -10.0 / (*slope * std::log (10.0)); // of energy
    return toDecibels (energy, lastPower * samplesPerNeper);
}

DecayTimes measureDecayTimes (const float* samples, int numSamples, double sampleRate)
{
    const auto curve = energyDecayCurve (samples, numSamples, sampleRate);

    if (curve.empty())
        return {};

    const int onset = onsetOf (samples, numSamples);

    return { decayTime (curve, onset, sampleRate, 0.0, -10.0),
             decayTime (curve, onset, sampleRate, -5.0, -25.0),
             decayTime (curve, onset, sampleRate, -5.0, -35.0) };
}
