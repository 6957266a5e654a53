#include "engine/DelayElement.h"
#include "engine/DelayKernels.h"

#include <gtest/gtest.h>

#include <utility>

// On a processor with AVX2 and FMA (Wine passes them through), the recorded
// output is compared from the AVX2 kernels, not from the portable ones twice.
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
