#pragma once

#include <juce_core/juce_core.h>

// Preset documents keep a value to the nearest millionth: the float is scaled
// by a million, rounded half to even, scaled back and printed with nine
// significant digits, so 0.1234567 is written "0.123457" and 0.5 is "0.5".
inline juce::String presetValueText (float value)
{
    const double scaled = (double) (value * 1000000.0f);
    const double rounded = std::nearbyint (scaled) * 0.000001;
    return juce::String::formatted ("%.9g", rounded);
}
