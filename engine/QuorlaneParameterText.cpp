#include "engine/QuorlaneParameterText.h"

#include "engine/QuorlaneMapping.h"

#include <cmath>
#include <cstdio>

using namespace QuorlaneMapping;

namespace
{
// One decimal place; beyond +/-1e20 the plain notation would run on for
// dozens of digits.
std::string number (double value)
{
    char text[64];
    std::snprintf (text, sizeof text, std::abs (value) > 1e20 ? "%.9g" : "%.1f", value);
    return text;
}

std::string split (double p, const char* names)
{
    const int x = (int) std::floor (p * 100.0 + 0.5);
    char text[64];
    std::snprintf (text, sizeof text, "%d/%d%% (%s)", 100 - x, x, names);
    return text;
}

std::string decibels (double gain)
{
    return number (gain > 0.0 ? 20.0 * std::log10 (gain) : -320.0);
}

std::string metres (double seconds)
{
    return number (seconds * metresPerSecond) + "m";
}
}

std::string quorlaneParameterText (int index, float normalisedValue)
{
    const double p = (double) normalisedValue;

    switch (index)
    {
        // The early size is measured at the far end of its chain, the late
        // size at the near end of its own.
        case earlySize:   return metres (chainLength (1.0 / earlySizeFrequency (p), earlyChainLength - 1));
        case lateSize:    return metres (1.0 / pitchFrequency (lateSemitones (p)));

        case earlyDiffusion:
        case lateDiffusion:
        case modulation:  return number (p * 100.0) + "%";

        case earlyAttenuation:
        case lateAttenuation:  return number (attenuationFrequency (p)) + "Hz";
        case lateBassCut:      return number (bassCutFrequency (p)) + "Hz";

        case earlyEqFrequency:
        case lateEqFrequency:  return number (eqFrequency (p)) + "Hz";

        case earlyEqGain:
        case lateEqGain:       return number (eqGainDb (p)) + "dB";

        case earlyEqBandwidth:
        case lateEqBandwidth:  return number (eqBandwidth (p)) + "Oct.";

        case lateFeedback: return number (feedbackGain (p) * 100.0) + "%";
        case crossFade:    return split (p, "Early/Late");

        case predelay:
        {
            const double seconds = predelaySeconds (p);
            return number (seconds * 1000.0) + "ms (" + metres (seconds) + ")";
        }

        case wetGain: return decibels (wetGainFactor (p)) + "dB";
        case dryWet:  return split (p, "Dry/Wet");

        case outputVolume:
        {
            const double gain = volumeFactor (p);
            const double level = gain > 0.0 ? 20.0 * std::log10 (gain) : -320.0;

            if (level <= -320.0)
                return "-Inf.";

            return (level > 0.01 ? "+" : "") + number (level) + "dB";
        }

        default: return {};
    }
}
