#pragma once

#include <cstdint>
#include <vector>

// The delay element written the plain way, one sample at a time in the order
// the element is defined, with tap-major tables. The engine's block-wise and
// vectorised element must sound the same.
class ReferenceDelayElement
{
public:
    ReferenceDelayElement (std::uint32_t randomA, std::uint32_t randomB);

    void prepare (double sampleRate);
    void setLength (double samples);
    void init (double samples, double depth, double coefficient);
    void setDepth (double depth) { targetDepth = depth; }
    void setCoefficient (double g) { coefficient = g; }

    void processAllpass (double* io, int count, unsigned quality);
    void processDelay (const double* input, double* output, int count, unsigned quality);

private:
    double read (double position, unsigned quality) const;
    void write (double value);
    void glide();

    std::vector<double> buffer;
    std::vector<double> tables[4];
    std::uint32_t writeIndex = 0;
    int capacity = 44100;

    std::uint32_t a, b;
    double lfoCoefficient = 0.0, lfoTarget = 0.5, stage1 = 0.5, stage2 = 0.5, countdown = 0.0;
    double rate = 1.0, glideCoefficient = 0.0001;
    double length = 10.0, targetLength = 10.0, depth = 0.0, targetDepth = 0.0, coefficient = 0.0;
};
