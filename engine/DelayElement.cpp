#include "engine/DelayElement.h"

#include "engine/InterpolationTables.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

DelayElement::DelayElement (std::uint32_t a, std::uint32_t b, double longest)
    : longestSeconds (longest)
{
    motion.randomA = a % 3060 + 12345;
    motion.randomB = b % 3060 + 12345;

    // The shared tables are built by the first element, not by the audio
    // thread on first use.
    InterpolationTables::get();
    allocate (capacityFor (44100.0));
    longestSamples = longestAt (44100.0);
    setLength (10.0);
}

void DelayElement::allocate (int newCapacity)
{
    // calloc hands out fresh zero pages without touching them, which keeps
    // building an instance quick when a host scans plug-ins.
    constexpr std::size_t lineDoubles = 8;
    storage.reset (static_cast<double*> (std::calloc ((std::size_t) (newCapacity + guard) + lineDoubles, sizeof (double))));

    if (storage == nullptr)
        throw std::bad_alloc();

    const auto address = reinterpret_cast<std::uintptr_t> (storage.get());
    buffer = storage.get() + (lineDoubles - address / sizeof (double) % lineDoubles) % lineDoubles;

    capacity = newCapacity;
    writeIndex = 0;
    silent = true;
}

double DelayElement::longestAt (double sampleRate) const noexcept
{
    return longestSeconds >= 1.0 ? std::numeric_limits<double>::infinity() : longestSeconds * sampleRate;
}

int DelayElement::capacityFor (double sampleRate) const noexcept
{
    const int oneSecond = (int) std::max (sampleRate, 44100.0);

    // Reads reach up to 31 samples behind their position, and the position
    // stays 64 samples clear of the oldest sample; whole blocks of the
    // buffer keep every block's writes in one piece.
    const double reach = std::ceil (longestAt (sampleRate)) + 128.0;

    if (! (reach < oneSecond))
        return oneSecond;

    return ((int) reach + blockSize - 1) / blockSize * blockSize;
}

void DelayElement::prepare (double sampleRate)
{
    const int newCapacity = capacityFor (sampleRate);

    if (newCapacity != capacity)
        allocate (newCapacity);
    else
        clear();

    rate = 2.0 * (1.0 - std::pow (0.5, 44100.0 / sampleRate));
    motion.glide = rate * 0.0001;
    motion.length = clampLength (motion.length);
    longestSamples = longestAt (sampleRate);

    // Lengths set for the previous rate hold until their owner sets new ones.
    aim (motion.targetLength);
}

void DelayElement::clear() noexcept
{
    // A buffer fresh from calloc is left untouched, so that preparing a new
    // instance does not fault in every page of it.
    if (! silent)
        std::memset (buffer, 0, (std::size_t) (capacity + guard) * sizeof (double));

    writeIndex = 0;
    silent = true;
}

double DelayElement::clampLength (double samples) const noexcept
{
    return std::clamp (samples, 1.0, (double) (capacity - 1));
}

void DelayElement::aim (double samples) noexcept
{
    motion.targetLength = clampLength (samples);
    motion.lfoCountdown = 2.0 * motion.targetLength;
    motion.lfoCoefficient = (1.0 - std::exp (-1.0 / motion.targetLength)) * rate;
    motion.lengthSettled = false;
}

void DelayElement::checkReach() const noexcept
{
    assert (! (motion.targetLength * (1.0 + motion.targetDepth) > longestSamples * (1.0 + 1e-9)));
}

void DelayElement::setLength (double samples) noexcept
{
    aim (samples);
    checkReach();
}

void DelayElement::init (double samples, double newDepth, double g) noexcept
{
    setLength (samples);
    motion.length = motion.targetLength;
    motion.depth = motion.targetDepth = newDepth;
    motion.depthSettled = false;
    checkReach();
    coefficient = g;
    motion.lfoStage1 = motion.lfoStage2 = 0.5;
}

void DelayElement::setDepth (double newDepth) noexcept
{
    motion.targetDepth = newDepth;
    motion.depthSettled = false;
    checkReach();
}

void DelayElement::process (const double* input, double* output, unsigned quality,
                            const DelayKernels& kernels) noexcept
{
    // A plain delay is planned like a modulated one without modulation: its
    // positions are those of its gliding length alone.
    motion.depth = motion.targetDepth = 0.0;
    motion.depthSettled = true;
    motion.lfoCountdown = std::numeric_limits<double>::infinity();

    // Each read reaches back at least one sample, so writing the whole block
    // first never changes what is read.
    const std::uint32_t start = writeIndex;
    writeBlock ([input] (int n) { return input[n] + 1e-20; });
    kernels.planAndRead (motion, start, capacity, buffer, output, quality);
}
