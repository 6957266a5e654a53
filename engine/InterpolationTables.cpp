#include "engine/InterpolationTables.h"

#include <cmath>

double InterpolationTables::weight (int taps, int entry)
{
    const int size = taps * phases;
    const int centre = size / 2;

    if (entry == centre)
        return 1.0;

    constexpr double pi = 3.141592653589793;
    const double omega = 2.0 * pi / size;
    const double x = (double) (entry - centre);
    const double sinc = std::sin (x * pi / phases) / (x * pi) * phases;
    const double window = 0.42 - 0.5 * std::cos (entry * omega) + 0.08 * std::cos (entry * (2.0 * omega));
    return sinc * window;
}

InterpolationTables::InterpolationTables()
{
    for (unsigned quality = 1; quality <= 3; ++quality)
    {
        const int taps = tapsForQuality (quality);

        for (int phase = 0; phase < phases; ++phase)
        {
            double* r = data + offsetForQuality (quality) + (std::size_t) (phase * taps);

            for (int j = 0; j < taps; ++j)
                r[j] = weight (taps, (taps - 1 - j) * phases + phase);
        }
    }
}
