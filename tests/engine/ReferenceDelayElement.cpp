#include "tests/engine/ReferenceDelayElement.h"

#include "engine/InterpolationTables.h"

#include <algorithm>
#include <cmath>

ReferenceDelayElement::ReferenceDelayElement (std::uint32_t randomA, std::uint32_t randomB)
    : buffer (2 * 44100), a (randomA % 3060 + 12345), b (randomB % 3060 + 12345)
{
    for (unsigned quality = 1; quality <= 3; ++quality)
    {
        const int taps = InterpolationTables::tapsForQuality (quality);

        for (int entry = 0; entry < taps * 512; ++entry)
            tables[quality].push_back (InterpolationTables::weight (taps, entry));
    }

    setLength (10.0);
}

void ReferenceDelayElement::prepare (double sampleRate)
{
    capacity = (int) std::max (sampleRate, 44100.0);
    buffer.assign (2 * (size_t) capacity, 0.0);
    writeIndex = 0;
    rate = 2.0 * (1.0 - std::pow (0.5, 44100.0 / sampleRate));
    glideCoefficient = rate * 0.0001;
    length = std::clamp (length, 1.0, capacity - 1.0);
    setLength (targetLength);
}

void ReferenceDelayElement::setLength (double samples)
{
    targetLength = std::clamp (samples, 1.0, capacity - 1.0);
    countdown = 2.0 * targetLength;
    lfoCoefficient = (1.0 - std::exp (-1.0 / targetLength)) * rate;
}

void ReferenceDelayElement::init (double samples, double newDepth, double g)
{
    setLength (samples);
    length = targetLength;
    depth = targetDepth = newDepth;
    coefficient = g;
    stage1 = stage2 = 0.5;
}

double ReferenceDelayElement::read (double position, unsigned quality) const
{
    const int whole = (int) position;
    const double fraction = position - whole;

    if (quality == 0)
        return buffer[(size_t) whole - 1] + (buffer[(size_t) whole] - buffer[(size_t) whole - 1]) * fraction;

    const int taps = InterpolationTables::tapsForQuality (quality);
    const int phase = (int) (fraction * 512);
    double sum = 0.0;

    for (int t = 0; t < taps; ++t)
        sum += tables[quality][(size_t) (t * 512 + phase)] * buffer[(size_t) (whole - t)];

    return sum;
}

void ReferenceDelayElement::write (double value)
{
    buffer[writeIndex + (size_t) capacity] = value;
    buffer[writeIndex] = value;
    writeIndex = (writeIndex + 1) % (std::uint32_t) capacity;
}

void ReferenceDelayElement::glide()
{
    length = length - (length - targetLength) * glideCoefficient + 1e-20;
}

void ReferenceDelayElement::processAllpass (double* io, int count, unsigned quality)
{
    for (int n = 0; n < count; ++n)
    {
        const double x = io[n] + 1e-20;
        glide();
        depth = depth - (depth - targetDepth) * glideCoefficient + 1e-20;

        const double before = countdown;
        countdown = countdown - 1.0;

        if (before < 0.0)
        {
            const std::uint32_t oldB = b;
            a ^= b;
            lfoTarget = ((double) (std::int32_t) oldB * 4.656612874161595e-10 + 1.0) * 0.5;
            b = a + oldB;
            countdown = 2.0 * length;
        }

        stage1 = stage1 - (stage1 - lfoTarget) * lfoCoefficient + 1e-20;
        stage2 = stage2 - (stage2 - stage1) * lfoCoefficient + 1e-20;
        const double m = stage2 * depth * length + 1e-20;
        const double position = std::max ((double) (writeIndex + (std::uint32_t) capacity) - length - m, writeIndex + 64.0);

        const double d = read (position, quality);
        const double y = -(d + 1e-20 + coefficient * x + 1e-20);
        write (y * coefficient + x + 1e-20);
        io[n] = y;
    }
}

void ReferenceDelayElement::processDelay (const double* input, double* output, int count, unsigned quality)
{
    for (int n = 0; n < count; ++n)
    {
        const double x = input[n] + 1e-20;
        glide();
        const double position = std::max ((double) (writeIndex + (std::uint32_t) capacity) - length, writeIndex + 64.0);
        output[n] = read (position, quality);
        write (x);
    }
}
