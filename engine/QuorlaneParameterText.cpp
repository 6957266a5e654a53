#include "engine/QuorlaneParameterText.h"

#include "engine/QuorlaneMapping.h"

#include <cmath>
#include <cstdio>

using namespace QuorlaneMapping;

namespace
{
// One decimal place and the unit; beyond +/-1e20 the plain notation would
// run on for dozens of digits.
std::string number (double value, const char* unit, const char* sign = "")
{
    char text[64];
    std::snprintf (text, sizeof text, std::abs (value) > 1e20 ? "%s%.9g%s" : "%s%.1f%s", sign, value, unit);
    return text;
}

std::string split (double p, const char* names)
{
    const int x = (int) std::floor (p * 100.0 + 0.5);
    char text[64];
    std::snprintf (text, sizeof text, "%d/%d%% (%s)", 100 - x, x, names);
    return text;
}

double decibels (double gain)
{
    return gain > 0.0 ? 20.0 * std::log10 (gain) : -320.0;
}

std::string metres (double seconds)
{
    return number (seconds * metresPerSecond, "m");
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
        case modulation:  return number (p * 100.0, "%");

        case earlyAttenuation:
        case lateAttenuation:  return number (attenuationFrequency (p), "Hz");
        case lateBassCut:      return number (bassCutFrequency (p), "Hz");

        case earlyEqFrequency:
        case lateEqFrequency:  return number (eqFrequency (p), "Hz");

        case earlyEqGain:
        case lateEqGain:       return number (eqGainDb (p), "dB");

        case earlyEqBandwidth:
        case lateEqBandwidth:  return number (eqBandwidth (p), "Oct.");

        case lateFeedback: return number (feedbackGain (p) * 100.0, "%");
        case crossFade:    return split (p, "Early/Late");

        case predelay:
        {
            const double seconds = predelaySeconds (p);
            std::string text = number (seconds * 1000.0, "ms (");
            text.append (metres (seconds)).append (")");
            return text;
        }

        case wetGain: return number (decibels (wetGainFactor (p)), "dB");
        case dryWet:  return split (p, "Dry/Wet");

        case outputVolume:
        {
            const double level = decibels (volumeFactor (p));

            if (level <= -320.0)
                return "-Inf.";

            return number (level, "dB", level > 0.01 ? "+" : "");
        }

        default: return {};
    }
}

std::string quorlanePreparedBassCutText (float normalisedValue)
{
    return number (preparedBassCutFrequency ((double) normalisedValue), "Hz");
}
