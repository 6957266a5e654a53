#include "engine/DelayElement.h"
#include "engine/DelayElementBank.h"
#include "engine/InterpolationTables.h"
#include "tests/engine/ReferenceDelayElement.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

namespace
{
constexpr int block = 32;

// A chain of allpasses of assorted lengths (some shorter than a block, so that
// they read what they write), depths and coefficients, with glides started
// along the way; run by the engine and by the reference side by side. Every
// other element has a buffer of just the longest delay it is asked for, which
// it wraps around many times a second.
struct AllpassChain
{
    static constexpr int size = 12; // one group of eight lanes and one of four
    static constexpr double longestSeconds = 2500.0 / 48000.0;

    std::vector<std::unique_ptr<DelayElement>> elements;
    std::vector<std::unique_ptr<ReferenceDelayElement>> references;
    DelayElementBank bank;

    AllpassChain (double sampleRate, const DelayKernels& kernels) : bank (kernels)
    {
        for (int i = 0; i < size; ++i)
        {
            elements.push_back (std::make_unique<DelayElement> (1000u + (unsigned) i * 77u, 5000u + (unsigned) i * 31u,
                                                                 i % 2 == 0 ? 1.0 : longestSeconds));
            references.push_back (std::make_unique<ReferenceDelayElement> (1000u + (unsigned) i * 77u, 5000u + (unsigned) i * 31u));
            elements.back()->prepare (sampleRate);
            references.back()->prepare (sampleRate);
            bank.add (*elements.back());

            const double length = i % 4 == 0 ? 3.0 + i : 40.0 + 211.0 * i;
            const double depth = 0.01 * (i % 5);
            const double g = 0.45 + 0.03 * i;
            elements.back()->init (length, depth, g);
            references.back()->init (length, depth, g);
        }
    }

    void retarget (int blockNumber)
    {
        for (int i = 0; i < size; ++i)
        {
            const double length = 20.0 + 97.0 * ((i + blockNumber) % 13);
            elements[(size_t) i]->setLength (length);
            references[(size_t) i]->setLength (length);
            elements[(size_t) i]->setDepth (0.1 - 0.005 * i);
            references[(size_t) i]->setDepth (0.1 - 0.005 * i);
        }
    }
};

double largestDifference (const double* a, const double* b)
{
    double largest = 0.0;

    for (int n = 0; n < block; ++n)
        largest = std::max (largest, std::abs (a[n] - b[n]));

    return largest;
}
}

// The vectorised, block-wise element against the plain per-sample reference,
// over seconds of noise, in every interpolation variant and with each set of
// kernels this processor runs. The engine evaluates the glides and the LFO in
// closed form for a whole block, the reference steps their recursions sample
// by sample: they must stay within 1e-9 of each other.
TEST (DelayElement, MatchesReferenceAtEveryQuality)
{
    for (const DelayKernels* kernels : { &DelayKernels::portable(), &DelayKernels::best() })
    {
        for (unsigned quality = 0; quality <= 3; ++quality)
        {
            SCOPED_TRACE (testing::Message() << "quality " << quality);
            AllpassChain chain (48000.0, *kernels);

            DelayElement plain (7u, 9u, 901.0 / 48000.0);
            ReferenceDelayElement plainReference (7u, 9u);
            plain.prepare (48000.0);
            plainReference.prepare (48000.0);

            std::mt19937 random (quality);
            std::uniform_real_distribution<double> noise (-1.0, 1.0);
            double largest = 0.0;

            for (int b = 0; b < 48000 * 3 / block; ++b)
            {
                if (b % 1500 == 700)
                {
                    chain.retarget (b);
                    plain.setLength (b % 3000 == 700 ? 2.5 : 900.25);
                    plainReference.setLength (b % 3000 == 700 ? 2.5 : 900.25);
                }

                double io[block], expected[block];

                for (int n = 0; n < block; ++n)
                    io[n] = expected[n] = noise (random);

                chain.bank.beginBlock (quality);

                // Every other block runs the long elements between the short
                // ones (every fourth) as chains.
                for (int i = 0; i < AllpassChain::size; ++i)
                {
                    if (b % 2 == 0 || i % 4 == 0)
                        chain.bank.process (i, io);
                    else if (i % 4 == 1)
                        chain.bank.processChain (i, 1, 3, io);

                    chain.references[(size_t) i]->processAllpass (expected, block, quality);
                }

                largest = std::max (largest, largestDifference (io, expected));

                plain.process (io, io, quality, *kernels);
                plainReference.processDelay (expected, expected, block, quality);
                largest = std::max (largest, largestDifference (io, expected));
            }

            EXPECT_LT (largest, 1e-9);
        }
    }
}

// On a processor with AVX2 and FMA (Wine passes them through), the comparison
// above covers the AVX2 kernels, not the portable ones twice.
TEST (DelayElement, BestKernelsAreTheAvx2OnesWhereTheProcessorHasThem)
{
#if defined(__x86_64__)
    __builtin_cpu_init();

    if (! (__builtin_cpu_supports ("avx2") && __builtin_cpu_supports ("fma")))
        GTEST_SKIP() << "this processor has no AVX2 and FMA";

    EXPECT_NE (DelayKernels::best().plan, DelayKernels::portable().plan);
    EXPECT_NE (DelayKernels::best().interpolate, DelayKernels::portable().interpolate);
#else
    GTEST_SKIP() << "no AVX2 kernels on this architecture";
#endif
}

TEST (DelayElement, LengthAndCapacityClamps)
{
    DelayElement element (1u, 1u);

    for (const auto& [rate, capacity] : { std::pair { 22050.0, 44100 }, { 96000.0, 96000 } })
    {
        element.prepare (rate);
        EXPECT_EQ (element.getCapacity(), capacity);
        const double longest = capacity - 1.0;

        for (const auto& [length, clamped] : { std::pair { 0.0, 1.0 }, { -12.0, 1.0 }, { (double) capacity, longest }, { 1.0e9, longest } })
        {
            element.setLength (length);
            EXPECT_EQ (element.getTargetLength(), clamped) << rate << " " << length;
        }
    }

    // A short element's buffer follows the rate, far below a second.
    DelayElement shortOne (1u, 1u, 0.01);

    for (double rate : { 22050.0, 48000.0, 192000.0 })
    {
        shortOne.prepare (rate);
        EXPECT_GT (shortOne.getCapacity(), 0.01 * rate + 96.0);
        EXPECT_LT (shortOne.getCapacity(), 0.01 * rate + 256.0);
    }
}
