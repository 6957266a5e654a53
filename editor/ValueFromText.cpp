#include "ValueFromText.h"

#include <cmath>

namespace
{
    constexpr int numSamples = 256;
    constexpr int numRefinements = 24;

    bool isDigit (juce::juce_wchar c) { return c >= '0' && c <= '9'; }
}

std::optional<double> ValueFromText::firstNumber (const juce::String& text)
{
    for (int i = 0; i < text.length(); ++i)
    {
        const bool startsNumber = isDigit (text[i]) || (text[i] == '.' && isDigit (text[i + 1]));

        if (! startsNumber)
            continue;

        const int start = i > 0 && (text[i - 1] == '-' || text[i - 1] == '+') ? i - 1 : i;
        return text.substring (start).getDoubleValue();
    }

    return std::nullopt;
}

// A coarse scan finds the nearest sample wherever the display runs; between
// its neighbours the display is taken as monotonic and bisected, so that a
// value the display can show is found to the displayed precision.
std::optional<float> ValueFromText::find (const DisplayText& displayText, const juce::String& typed)
{
    const auto target = firstNumber (typed);

    if (! target)
    {
        const auto word = typed.trim();

        for (const float end : { 0.0f, 1.0f })
            if (word.isNotEmpty() && displayText (end).startsWithIgnoreCase (word))
                return end;

        return std::nullopt;
    }

    const auto numberAt = [&] (float v) { return firstNumber (displayText (v)); };
    const auto distanceAt = [&] (float v)
    {
        const auto n = numberAt (v);
        return n ? std::abs (*n - *target) : HUGE_VAL;
    };

    // The extremes are kept where they lie nearest an end of the range, so
    // that a number beyond what the display shows goes to that end.
    int best = -1, lowest = -1, highest = -1;
    double bestDistance = HUGE_VAL, lowestNumber = HUGE_VAL, highestNumber = -HUGE_VAL;
    const auto nearerEnd = [] (int i, int than) { return juce::jmin (i, numSamples - i) < juce::jmin (than, numSamples - than); };

    for (int i = 0; i <= numSamples; ++i)
    {
        const auto n = numberAt ((float) i / numSamples);

        if (! n)
            continue;

        if (std::abs (*n - *target) < bestDistance)
        {
            best = i;
            bestDistance = std::abs (*n - *target);
        }

        if (*n < lowestNumber || (*n == lowestNumber && nearerEnd (i, lowest)))
        {
            lowest = i;
            lowestNumber = *n;
        }

        if (*n > highestNumber || (*n == highestNumber && nearerEnd (i, highest)))
        {
            highest = i;
            highestNumber = *n;
        }
    }

    if (best < 0)
        return std::nullopt;

    if (*target >= highestNumber)
        return (float) highest / numSamples;

    if (*target <= lowestNumber)
        return (float) lowest / numSamples;

    const float nearest = (float) best / numSamples;
    float lo = (float) juce::jmax (0, best - 1) / numSamples;
    float hi = (float) juce::jmin (numSamples, best + 1) / numSamples;
    const auto low = numberAt (lo), high = numberAt (hi);

    if (! low || ! high || *low == *high)
        return nearest;

    const double direction = *high > *low ? 1.0 : -1.0;

    for (int step = 0; step < numRefinements; ++step)
    {
        const float middle = 0.5f * (lo + hi);
        const auto n = numberAt (middle);

        if (! n)
            break;

        if ((*n - *target) * direction < 0.0)
            lo = middle;
        else
            hi = middle;
    }

    float result = nearest;

    for (const float candidate : { hi, lo })
        if (distanceAt (candidate) < distanceAt (result))
            result = candidate;

    return result;
}
