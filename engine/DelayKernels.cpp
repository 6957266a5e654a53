#include "engine/DelayKernels.h"

#include "engine/InstructionSet.h"
#include "engine/InterpolationTables.h"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>

#if QUORLANE_X86_DISPATCH
 #include <immintrin.h>
#endif

#define QUORLANE_INLINE inline __attribute__ ((always_inline))

// Lambdas inlined where they are handed over, before the compiler decides on
// the AVX2 helpers they call (which it can only inline into an AVX2 kernel).
#define QUORLANE_INLINE_LAMBDA __attribute__ ((always_inline))

namespace
{
// Generic vectors, mapped by the compiler onto the function's target: one
// SSE2 or AVX register each, or scalars where there are no such registers.
using Doubles2 = double __attribute__ ((vector_size (16)));
using Doubles4 = double __attribute__ ((vector_size (32)));
using Ints2 = std::int32_t __attribute__ ((vector_size (8)));
using Ints4 = std::int32_t __attribute__ ((vector_size (16)));

#if QUORLANE_X86_DISPATCH
// AVX2 instructions that the generic vectors do not reach. These are plain
// inline functions of the AVX2 target, which the compiler inlines wherever
// they end up inside an AVX2 kernel (as always_inline it would have to at
// every step, including the shared templates built for any target).

// Four values rounded down in one step (the generic vectors have no such
// step; the conversion of the integer parts back to doubles takes more).
QUORLANE_TARGET_FMA inline void roundDown (const Doubles4& x, Doubles4& result)
{
    result = (Doubles4) _mm256_floor_pd ((__m256d) x);
}

// The sums of the four values of each of s0 ... s3, as (v0 + v1) + (v2 + v3).
QUORLANE_TARGET_FMA inline void sumFours (const Doubles4& s0, const Doubles4& s1, const Doubles4& s2, const Doubles4& s3,
                                          double* result)
{
    const __m256d ab = _mm256_hadd_pd ((__m256d) s0, (__m256d) s1);
    const __m256d cd = _mm256_hadd_pd ((__m256d) s2, (__m256d) s3);
    _mm256_storeu_pd (result, _mm256_add_pd (_mm256_permute2f128_pd (ab, cd, 0x20), _mm256_permute2f128_pd (ab, cd, 0x31)));
}
#endif

// The integer vector of conversions.
template <typename Native> struct Traits;
template <> struct Traits<Doubles2> { using Ints = Ints2; };
template <> struct Traits<Doubles4> { using Ints = Ints4; };

// Memory access at any alignment, one native vector at a time (which the
// compiler turns into single unaligned loads and stores).
template <typename Vector, typename Scalar>
QUORLANE_INLINE void loadUnaligned (Vector& v, const Scalar* source)
{
    std::memcpy (&v, source, sizeof v);
}

template <typename Vector, typename Scalar>
QUORLANE_INLINE void storeUnaligned (Scalar* destination, const Vector& v)
{
    std::memcpy (destination, &v, sizeof v);
}

// The linear reads of one native vector of positions into out, given their
// stored indices and fractions: each read's two samples are loaded as one
// pair, and the pairs are regrouped into older and newer samples.
template <typename Native, typename Indices>
QUORLANE_INLINE void linearVector (const double* buffer, const Indices& index, const Native& fraction, double* out)
{
    // Stored indices are never negative; taken as unsigned, they need no
    // sign extension on their way from the vector to the address.
    auto pair = [buffer] (std::int32_t i)
    {
        Doubles2 p;
        loadUnaligned (p, buffer + (std::uint32_t) i - 1);
        return p;
    };

    Native older, newer;

    if constexpr (sizeof (Native) == 32)
    {
        const Doubles4 first = __builtin_shufflevector (pair (index[0]), pair (index[2]), 0, 1, 2, 3);
        const Doubles4 second = __builtin_shufflevector (pair (index[1]), pair (index[3]), 0, 1, 2, 3);
        older = __builtin_shufflevector (first, second, 0, 4, 2, 6);
        newer = __builtin_shufflevector (first, second, 1, 5, 3, 7);
    }
    else
    {
        const Doubles2 first = pair (index[0]), second = pair (index[1]);
        older = __builtin_shufflevector (first, second, 0, 2);
        newer = __builtin_shufflevector (first, second, 1, 3);
    }

    storeUnaligned (out, (Native) (older + (newer - older) * fraction));
}

// `count` native vectors side by side: independent work to keep the
// processor busy while each one waits for its previous result.
template <typename Native, int count>
struct Pack
{
    static constexpr int nativeWidth = (int) (sizeof (Native) / sizeof (double));
    static constexpr int width = nativeWidth * count;

    Native part[count];

    static QUORLANE_INLINE Pack load (const double* source)
    {
        Pack p;

        for (int i = 0; i < count; ++i)
            loadUnaligned (p.part[i], source + i * nativeWidth);

        return p;
    }

    QUORLANE_INLINE void store (double* destination) const
    {
        for (int i = 0; i < count; ++i)
            storeUnaligned (destination + i * nativeWidth, part[i]);
    }

    friend QUORLANE_INLINE Pack operator+ (const Pack& x, const Pack& b)
    {
        Pack a = x;

        for (int i = 0; i < count; ++i)
            a.part[i] += b.part[i];

        return a;
    }

    friend QUORLANE_INLINE Pack operator- (const Pack& x, const Pack& b)
    {
        Pack a = x;

        for (int i = 0; i < count; ++i)
            a.part[i] -= b.part[i];

        return a;
    }

    friend QUORLANE_INLINE Pack operator* (const Pack& x, const Pack& b)
    {
        Pack a = x;

        for (int i = 0; i < count; ++i)
            a.part[i] *= b.part[i];

        return a;
    }

    friend QUORLANE_INLINE Pack atLeast (const Pack& x, const Pack& b)
    {
        Pack a = x;

        for (int i = 0; i < count; ++i)
            a.part[i] = a.part[i] < b.part[i] ? b.part[i] : a.part[i];

        return a;
    }

    static QUORLANE_INLINE Pack broadcast (double value)
    {
        Pack p;

        for (int i = 0; i < count; ++i)
            p.part[i] = Native {} + value;

        return p;
    }

    using Ints = typename Traits<Native>::Ints;

    // The integer parts of part i's positions, and their fractions.
    // Positions are never negative, so rounding down is taking the integer
    // part.
    QUORLANE_INLINE void wholeAndFraction (int i, Ints& whole, Native& fraction) const
    {
        whole = __builtin_convertvector (part[i], Ints);
        Native back;

       #if QUORLANE_X86_DISPATCH
        if constexpr (sizeof (Native) == 32)
            roundDown (part[i], back);
        else
       #endif
            back = __builtin_convertvector (whole, Native);

        fraction = part[i] - back;
    }

    // Splits positions of the mirrored buffer into the stored index of their
    // integer parts and their fractions.
    QUORLANE_INLINE void split (std::int32_t wrapIndex, std::int32_t capacity, std::int32_t* index, double* fraction) const
    {
        const Ints wrap = Ints {} + wrapIndex, size = Ints {} + capacity;

        for (int i = 0; i < count; ++i)
        {
            Ints whole;
            Native f;
            wholeAndFraction (i, whole, f);
            storeUnaligned (index + i * nativeWidth, (Ints) (whole >= wrap ? whole - size : whole));
            storeUnaligned (fraction + i * nativeWidth, f);
        }
    }

    // The same for positions in the buffer itself (of blocks whose positions
    // all lie on one side of the wrap), whose integer parts are the stored
    // indices.
    QUORLANE_INLINE void splitStored (std::int32_t* index, double* fraction) const
    {
        for (int i = 0; i < count; ++i)
        {
            Ints whole;
            Native f;
            wholeAndFraction (i, whole, f);
            storeUnaligned (index + i * nativeWidth, whole);
            storeUnaligned (fraction + i * nativeWidth, f);
        }
    }

    // The linear reads at positions in the buffer itself, made as they are
    // split.
    QUORLANE_INLINE void readLinear (const double* buffer, double* out) const
    {
        for (int i = 0; i < count; ++i)
        {
            Ints whole;
            Native f;
            wholeAndFraction (i, whole, f);
            linearVector (buffer, whole, f, out + i * nativeWidth);
        }
    }

    // Splits positions in the buffer itself into their stored indices and the
    // rows of their phases in a table of `taps` weights each. Scaled by the
    // number of phases (a power of two, so exactly), a position's integer
    // part holds both: its own integer part above, its phase below.
    QUORLANE_INLINE void splitRows (int taps, std::int32_t* index, std::int32_t* row) const
    {
        constexpr int phases = InterpolationTables::phases, phaseBits = __builtin_ctz (phases);
        static_assert (phases == 1 << phaseBits);

        for (int i = 0; i < count; ++i)
        {
            const Ints scaled = __builtin_convertvector (part[i] * (double) phases, Ints);
            storeUnaligned (index + i * nativeWidth, (Ints) (scaled >> phaseBits));
            storeUnaligned (row + i * nativeWidth, (Ints) ((scaled & (phases - 1)) * taps));
        }
    }
};

constexpr double randomScale = 4.656612874161595e-10;

// One step of the LFO's random sequence for a lane whose countdown ran out.
QUORLANE_INLINE double nextLfoTarget (std::uint32_t& a, std::uint32_t& b)
{
    const std::uint32_t oldB = b;
    a ^= oldB;
    b = a + oldB;
    return ((double) (std::int32_t) oldB * randomScale + 1.0) * 0.5;
}

// x to the power k, for 0 <= k <= 64, in a handful of roundings.
QUORLANE_INLINE double power (double x, int k)
{
    double result = 1.0;

    for (; k > 0; k >>= 1, x *= x)
        if ((k & 1) != 0)
            result *= x;

    return result;
}

// The LFO's stages and countdown after a steady block (below).
QUORLANE_INLINE void finishSteadyBlock (DelayKernels::Motion& m)
{
    constexpr int blockSize = DelayKernels::blockSize;
    const double c = m.lfoCoefficient, a = 1.0 - c, a2 = a * a, a4 = a2 * a2;
    const double target = m.lfoTarget, from1 = m.lfoStage1 - target, from2 = m.lfoStage2 - target;
    const double a32 = power (a4, 8);
    m.lfoStage1 = target + a32 * from1;
    m.lfoStage2 = target + a32 * (from2 + blockSize * c * from1);
    m.lfoCountdown -= blockSize;
}

// Whether a block is steady (see planSteady) as far as its delay goes:
// nothing glides, no LFO step falls in it, the write index does not wrap in
// it and the delay stays clear of the oldest samples. Stage 2 of the LFO
// stays within [0, 1], so every position lies between the block's lowest and
// highest; where both are on one side of the wrap, so is every position
// (oneSide). Positions count from `start`: the write base, less the capacity
// where they all lie beyond the wrap, so that one-sided positions are those
// in the buffer itself.
QUORLANE_INLINE bool isSteady (const DelayKernels::Motion& m, std::uint32_t writeIndex, std::int32_t capacity,
                               bool& oneSide, double& start)
{
    constexpr int blockSize = DelayKernels::blockSize;
    const double base = (double) (writeIndex + (std::uint32_t) capacity);
    const double length = m.length, depth = m.depth;
    const double longest = std::max (length, m.targetLength) * (1.0 + std::max (depth, m.targetDepth));

    if (! (m.lengthSettled && m.depthSettled) || ! (m.lfoCountdown >= blockSize)
        || base + blockSize > 2.0 * capacity || ! (longest + 2.0 < capacity - 64.0))
        return false;

    const std::int32_t wrapIndex = capacity + blockSize - 1;
    const double lowest = base - length - depth * length - 2.0;
    const double highest = base + blockSize - length + 1.0;
    oneSide = lowest >= wrapIndex || highest < wrapIndex;
    start = lowest >= wrapIndex ? (double) writeIndex : base;
    return true;
}

// The block of most elements most of the time, in the closed forms below:
// nothing glides, no LFO step and no wrap of the write index fall in it, and
// the delay stays clear of the oldest samples. Returns false for any other,
// and also where oneSideOnly asks that no position cross the wrap and one
// does. take (n, positions, oneSide) receives the positions of the samples
// from n on, four at a time; where they lie on one side of the wrap, they
// are positions in the buffer itself.
template <typename Native, typename Take>
QUORLANE_INLINE bool planSteady (DelayKernels::Motion& m, std::uint32_t writeIndex, std::int32_t capacity,
                                 bool oneSideOnly, Take take)
{
    using Chunk = Pack<Native, 4 / Pack<Native, 1>::width>;
    constexpr int blockSize = DelayKernels::blockSize;
    constexpr int chunk = Chunk::width;
    static constexpr double ramp[chunk] = { 0.0, 1.0, 2.0, 3.0 };

    bool oneSide;
    double start;

    if (! isSteady (m, writeIndex, capacity, oneSide, start) || (oneSideOnly && ! oneSide))
        return false;

    const double length = m.length, depth = m.depth;
    const double c = m.lfoCoefficient, a = 1.0 - c, a2 = a * a, a4 = a2 * a2;
    const double target = m.lfoTarget, from1 = m.lfoStage1 - target, from2 = m.lfoStage2 - target;
    const double firstPowers[chunk] = { a, a2, a2 * a, a4 };

    // The position of sample n is start + n - length - depth length stage2,
    // with stage 2 as above: the terms that do not change with n's power of
    // a make one offset that steps by 1 a sample, and depth length scales
    // the weight of the power, which leaves one multiply-add per position.
    const double depthLength = depth * length;
    const Chunk powerStep = Chunk::broadcast (a4), weightStep = Chunk::broadcast (depthLength * 4.0 * c * from1);
    const Chunk four = Chunk::broadcast ((double) chunk);
    Chunk powers = Chunk::load (firstPowers);
    Chunk weights = Chunk::broadcast (depthLength * from2)
                  + Chunk::broadcast (depthLength * c * from1) * (Chunk::load (ramp) + Chunk::broadcast (1.0));
    Chunk offset = Chunk::broadcast (start - length - depthLength * target) + Chunk::load (ramp);

   #pragma GCC unroll 8
    for (int n = 0; n < blockSize; n += chunk)
    {
        const Chunk position = offset - powers * weights;
        powers = powers * powerStep;
        weights = weights + weightStep;
        offset = offset + four;

        take (n, position, oneSide);
    }

    finishSteadyBlock (m);
    return true;
}

// The steady block's plan.
template <typename Native>
QUORLANE_INLINE bool planSteadyBlock (DelayKernels::Motion& m, std::uint32_t writeIndex, std::int32_t capacity,
                                      std::int32_t* index, double* fraction)
{
    const std::int32_t wrapIndex = capacity + DelayKernels::blockSize - 1;

    return planSteady<Native> (m, writeIndex, capacity, false, [=] (int n, const auto& position, bool oneSide) QUORLANE_INLINE_LAMBDA
    {
        if (oneSide)
            position.splitStored (index + n, fraction + n);
        else
            position.split (wrapIndex, capacity, index + n, fraction + n);
    });
}

// The modulation and the glides are one-pole smoothers stepped once per
// sample, which as recursions are a chain of dependent arithmetic per sample.
// Their closed forms give every sample of a block independently:
//   a glide towards t from x:  t + (x - t) r^n, with r = 1 - glide;
//   the two LFO stages, both with coefficient c = 1 - a, towards the target t
//   from s1 and s2: stage 1 is t + (s1 - t) a^n, stage 2 is
//   t + a^n ((s2 - t) + n c (s1 - t)).
// They agree with the recursions to a few roundings (the recursions' 1e-20
// terms only keep them off subnormals, which the closed forms cannot reach).
// An LFO step starts a new segment from the stages' values at that sample.
// The countdown falls by exactly 1 per sample (every value it takes is
// exact), so when the steps fall is computed, not counted.
template <typename Native>
QUORLANE_INLINE void planBody (DelayKernels::Motion& m, std::uint32_t writeIndex, int wholeCapacity,
                               std::int32_t* index, double* fraction)
{
    using Chunk = Pack<Native, 4 / Pack<Native, 1>::width>;
    constexpr int blockSize = DelayKernels::blockSize;
    constexpr int chunk = Chunk::width;
    static constexpr double ramp[chunk] = { 0.0, 1.0, 2.0, 3.0 };

    const double base = (double) (writeIndex + (std::uint32_t) wholeCapacity);
    const bool gliding = ! (m.lengthSettled && m.depthSettled);
    const double capacity = (double) wholeCapacity;

    // Length and depth of every sample, where either glides; a settled one
    // keeps its value exactly (a glide to itself from no distance).
    alignas (64) double lengths[blockSize], depths[blockSize];
    const double r = 1.0 - m.glide, r2 = r * r;
    const double lengthTo = m.lengthSettled ? m.length : m.targetLength;
    const double depthTo = m.depthSettled ? m.depth : m.targetDepth;
    const double lengthFrom = m.length - lengthTo, depthFrom = m.depth - depthTo;

    if (gliding)
    {
        const double firstPowers[chunk] = { r, r2, r2 * r, r2 * r2 };
        Chunk powers = Chunk::load (firstPowers);
        const Chunk step = Chunk::broadcast (r2 * r2);

        for (int n = 0; n < blockSize; n += chunk)
        {
            (Chunk::broadcast (lengthTo) + Chunk::broadcast (lengthFrom) * powers).store (lengths + n);
            (Chunk::broadcast (depthTo) + Chunk::broadcast (depthFrom) * powers).store (depths + n);
            powers = powers * step;
        }
    }

    // Stage 2 of the LFO for every sample, where it has more than one
    // segment.
    alignas (64) double stage[blockSize + chunk];
    const double c = m.lfoCoefficient, a = 1.0 - c, a2 = a * a;
    const double firstPowers[chunk] = { a, a2, a2 * a, a2 * a2 };
    double target = m.lfoTarget;
    double from1 = m.lfoStage1 - target, from2 = m.lfoStage2 - target;
    int start = 0;

    // Stage 2 of the current segment, a chunk at a time from its start.
    struct StageChunks
    {
        Chunk target, powers, weights, powerStep, weightStep;

        QUORLANE_INLINE Chunk next()
        {
            const Chunk value = target + powers * weights;
            powers = powers * powerStep;
            weights = weights + weightStep;
            return value;
        }
    };

    auto segment = [&]
    {
        return StageChunks { Chunk::broadcast (target), Chunk::load (firstPowers),
                             Chunk::broadcast (from2) + Chunk::broadcast (c * from1) * (Chunk::load (ramp) + Chunk::broadcast (1.0)),
                             Chunk::broadcast (a2 * a2), Chunk::broadcast (4.0 * c * from1) };
    };

    auto fill = [&] (int end)
    {
        StageChunks chunks = segment();

        for (int n = start; n < end; n += chunk)
            chunks.next().store (stage + n);
    };

    auto stagesAfter = [&] (int steps, double& stage1, double& stage2)
    {
        const double p = power (a, steps);
        stage1 = target + p * from1;
        stage2 = target + p * (from2 + steps * c * from1);
    };

    const double countdown = m.lfoCountdown;
    double countdownSetTo = countdown;
    int countdownSetAt = 0;
    int nextLfo = countdown < 0.0 ? 0 : countdown < blockSize ? (int) countdown + 1 : blockSize;

    while (nextLfo < blockSize)
    {
        const int n = nextLfo;
        fill (n);

        double stage1, stage2;
        stagesAfter (n - start, stage1, stage2);
        target = nextLfoTarget (m.randomA, m.randomB);
        from1 = stage1 - target;
        from2 = stage2 - target;
        start = n;

        countdownSetTo = 2.0 * (gliding ? lengths[n] : m.length);
        countdownSetAt = n + 1;
        nextLfo = n + 2 + (int) std::min (countdownSetTo, (double) blockSize);
    }

    // Without an LFO step in the block (most blocks of all but the shortest
    // elements), stage 2 is made as the positions need it.
    const bool oneSegment = start == 0;

    if (! oneSegment)
        fill (blockSize);

    // Read positions. The write base falls back by the capacity where the
    // write index wraps; shifting a window over {0, 0, 0, 0, C, C, C, C}
    // gives a chunk its share of that.
    const double wraps[2 * chunk] = { 0.0, 0.0, 0.0, 0.0, capacity, capacity, capacity, capacity };
    const int wrapAt = (int) (2.0 * capacity - base);

    // Whether the modulated delay could come near the oldest samples.
    const double length = m.length, depth = m.depth;
    const double longest = std::max (length, m.targetLength) * (1.0 + std::max (depth, m.targetDepth));
    const bool clamped = ! (longest + 2.0 < capacity - 64.0);
    const Chunk oldestOffset = Chunk::broadcast (capacity - 64.0), tiny = Chunk::broadcast (1e-20);
    const Chunk four = Chunk::broadcast ((double) chunk);
    const std::int32_t wrapIndex = wholeCapacity + blockSize - 1; // the first position stored at - capacity

    auto positions = [&] (auto glidingNow, auto stageNow) QUORLANE_INLINE_LAMBDA
    {
        Chunk at = Chunk::broadcast (base) + Chunk::load (ramp);
        StageChunks stages = segment();

       #pragma GCC unroll 8
        for (int n = 0; n < blockSize; n += chunk, at = at + four)
        {
            Chunk stage2;

            if constexpr (stageNow)
                stage2 = stages.next();
            else
                stage2 = Chunk::load (stage + n);

            Chunk position;

            if constexpr (glidingNow)
            {
                const Chunk lengthNow = Chunk::load (lengths + n);
                position = at - lengthNow - (stage2 * Chunk::load (depths + n) * lengthNow + tiny);
            }
            else
            {
                position = at - Chunk::broadcast (length) - (stage2 * Chunk::broadcast (depth * length) + tiny);
            }

            if (n + chunk > wrapAt)
                position = position - Chunk::load (wraps + chunk - std::clamp (wrapAt - n, 0, chunk));

            if (clamped)
                position = atLeast (position, at - oldestOffset - Chunk::load (wraps + chunk - std::clamp (wrapAt - n, 0, chunk)));

            position.split (wrapIndex, wholeCapacity, index + n, fraction + n);
        }
    };

    if (gliding)
        oneSegment ? positions (std::true_type {}, std::true_type {}) : positions (std::true_type {}, std::false_type {});
    else
        oneSegment ? positions (std::false_type {}, std::true_type {}) : positions (std::false_type {}, std::false_type {});

    // The state after the block.
    if (gliding)
    {
        const double r32 = power (r, blockSize);
        m.length = lengthTo + lengthFrom * r32;
        m.depth = depthTo + depthFrom * r32;

        // Settled where a further step of the glide would leave it unchanged.
        m.lengthSettled = m.length == m.length - (m.length - m.targetLength) * m.glide + 1e-20;
        m.depthSettled = m.depth == m.depth - (m.depth - m.targetDepth) * m.glide + 1e-20;
    }

    stagesAfter (blockSize - start, m.lfoStage1, m.lfoStage2);
    m.lfoTarget = target;
    m.lfoCountdown = countdownSetTo - (double) (blockSize - countdownSetAt);
}

QUORLANE_INLINE double linearRead (const double* buffer, std::int32_t index, double fraction)
{
    const double older = buffer[index - 1];
    return older + (buffer[index] - older) * fraction;
}

// Linear reads, a native vector at a time: each read's two neighbours are
// loaded as one pair, and the pairs are regrouped into older and newer samples.
template <typename Native>
QUORLANE_INLINE void linearReads (const double* buffer, const std::int32_t* index, const double* fraction,
                                  double* out, int count)
{
    constexpr int width = Pack<Native, 1>::width;
    int n = 0;

    for (; n + width <= count; n += width)
    {
        Native f;
        typename Traits<Native>::Ints i;
        loadUnaligned (f, fraction + n);
        loadUnaligned (i, index + n);
        linearVector (buffer, i, f, out + n);
    }

    for (; n < count; ++n)
        out[n] = linearRead (buffer, index[n], fraction[n]);
}

// The four sums of four values each, horizontally: result[k] = sum of s_k.
template <typename Chunk>
QUORLANE_INLINE void reduceFour (const Chunk& s0, const Chunk& s1, const Chunk& s2, const Chunk& s3, double* result)
{
   #if QUORLANE_X86_DISPATCH
    if constexpr (std::is_same_v<Chunk, Pack<Doubles4, 1>>)
        sumFours (s0.part[0], s1.part[0], s2.part[0], s3.part[0], result);
    else
   #endif
    {
        const Chunk* sums[4] = { &s0, &s1, &s2, &s3 };

        for (int k = 0; k < 4; ++k)
        {
            double v[4];
            sums[k]->store (v);
            result[k] = (v[0] + v[1]) + (v[2] + v[3]);
        }
    }
}

// Windowed-sinc reads: for each, the phase's taps against the `taps`
// samples ending at the integer position, in one running sum of four; eight
// reads side by side (four without AVX, which has half the registers) keep
// the processor busy while each sum waits for its previous step, and every
// four sums are reduced together. Four reads take their steps in turn, so
// that the four independent steps follow each other in the code; one read's
// steps in a row would fill the processor's queue with work that waits.
// weightsFor (n) and samplesFor (n) give the phase's taps and the samples of
// read n.
template <typename Native, int taps, typename WeightsFor, typename SamplesFor>
QUORLANE_INLINE void sincReadsWith (WeightsFor weightsFor, SamplesFor samplesFor, double* out, int count)
{
    using Chunk = Pack<Native, 4 / Pack<Native, 1>::width>;
    constexpr int group = sizeof (Native) == 32 ? 8 : 4;
    int n = 0;

    for (; n + group <= count; n += group)
    {
        Chunk sum[group];

       #pragma GCC unroll 2
        for (int first = 0; first < group; first += 4)
        {
            const double* w[4];
            const double* x[4];

           #pragma GCC unroll 4
            for (int k = 0; k < 4; ++k)
            {
                w[k] = weightsFor (n + first + k);
                x[k] = samplesFor (n + first + k);
                sum[first + k] = Chunk::load (w[k]) * Chunk::load (x[k]);
            }

           #pragma GCC unroll 8
            for (int j = 4; j < taps; j += 4)
               #pragma GCC unroll 4
                for (int k = 0; k < 4; ++k)
                    sum[first + k] = sum[first + k] + Chunk::load (w[k] + j) * Chunk::load (x[k] + j);
        }

       #pragma GCC unroll 2
        for (int k = 0; k < group; k += 4)
            reduceFour (sum[k], sum[k + 1], sum[k + 2], sum[k + 3], out + n + k);
    }

    for (; n < count; ++n)
    {
        const double* w = weightsFor (n);
        const double* x = samplesFor (n);
        double sum = 0.0;

        for (int t = 0; t < taps; ++t)
            sum += w[t] * x[t];

        out[n] = sum;
    }
}

template <typename Native, int taps>
QUORLANE_INLINE void sincReads (const double* buffer, const std::int32_t* index, const double* fraction,
                                double* out, int count, const double* table)
{
    sincReadsWith<Native, taps> ([table, fraction] (int n) { return table + (int) (fraction[n] * InterpolationTables::phases) * taps; },
                                 [buffer, index] (int n) { return buffer + index[n] - (taps - 1); },
                                 out, count);
}

template <typename Native>
QUORLANE_INLINE void interpolateBody (const double* buffer, const std::int32_t* index, const double* fraction,
                                      double* out, int count, unsigned quality)
{
    if (quality == 0)
    {
        linearReads<Native> (buffer, index, fraction, out, count);
        return;
    }

    const double* table = InterpolationTables::get().row (quality, 0);

    switch (quality)
    {
        case 1:  sincReads<Native, 8> (buffer, index, fraction, out, count, table); break;
        case 2:  sincReads<Native, 16> (buffer, index, fraction, out, count, table); break;
        default: sincReads<Native, 32> (buffer, index, fraction, out, count, table); break;
    }
}

// The allpass update over samples whose reads are already made.
template <typename Native>
QUORLANE_INLINE void allpassBody (const double* reads, double g, double* io, double* written, int count)
{
    using P = Pack<Native, 1>;
    const P tiny = P::broadcast (1e-20), coefficient = P::broadcast (g);
    const P minusOne = P::broadcast (-1.0);
    int n = 0;

    for (; n + P::width <= count; n += P::width)
    {
        const P x = P::load (io + n) + tiny;
        const P y = (P::load (reads + n) + tiny + coefficient * x + tiny) * minusOne;
        const P v = y * coefficient + x + tiny;
        y.store (io + n);
        v.store (written + n);
    }

    for (; n < count; ++n)
    {
        const double x = io[n] + 1e-20;
        const double y = -(reads[n] + 1e-20 + g * x + 1e-20);
        io[n] = y;
        written[n] = y * g + x + 1e-20;
    }
}

// Stages one after the other over a block held in registers, so that the
// signal is loaded and stored once for the whole chain.
template <typename Native>
QUORLANE_INLINE void allpassChainBody (const double* reads, int readStride, const double* gains, double* io,
                                       double* const* written, int stages)
{
    using P = Pack<Native, 1>;
    constexpr int width = P::width;
    constexpr int vectors = DelayKernels::blockSize / width;
    const P tiny = P::broadcast (1e-20), minusOne = P::broadcast (-1.0);
    P signal[vectors];

    // Unrolled by the compiler's own means, so that the block stays in
    // registers.
    auto eachVector = [] (auto&& step)
    {
        [&]<int... v> (std::integer_sequence<int, v...>) { (step (v), ...); } (std::make_integer_sequence<int, vectors> {});
    };

    eachVector ([&] (int v) { signal[v] = P::load (io + v * width); });

    for (int s = 0; s < stages; ++s)
    {
        const P coefficient = P::broadcast (gains[s]);
        const double* r = reads + s * readStride;
        double* w = written[s];

       #pragma GCC unroll 16
        for (int v = 0; v < vectors; ++v)
        {
            const P x = signal[v] + tiny;
            const P y = (P::load (r + v * width) + tiny + coefficient * x + tiny) * minusOne;
            (y * coefficient + x + tiny).store (w + v * width);
            signal[v] = y;
        }
    }

    eachVector ([&] (int v) { signal[v].store (io + v * width); });
}

// The steady block inline, any other in a call of its own, so that the
// steady one does not pay for the other's set-up.
__attribute__ ((noinline)) void planAnyPortable (DelayKernels::Motion& m, std::uint32_t writeIndex, int capacity,
                                                 std::int32_t* index, double* fraction) noexcept
{
    planBody<Doubles2> (m, writeIndex, capacity, index, fraction);
}

void planPortable (DelayKernels::Motion& m, std::uint32_t writeIndex, int capacity, std::int32_t* index, double* fraction) noexcept
{
    if (! planSteadyBlock<Doubles2> (m, writeIndex, capacity, index, fraction))
        planAnyPortable (m, writeIndex, capacity, index, fraction);
}

// Reads that all share one fraction, as a filter of the phase's taps run
// along the samples: `samples` holds the first read's taps, and each later
// read's taps start one sample further on.
template <typename Native, int taps>
QUORLANE_INLINE void sincRun (const double* weights, const double* samples, double* out)
{
    constexpr int width = Pack<Native, 1>::width, vectors = 8;

    // Unrolled by the compiler's own means, so that the sums stay in
    // registers.
    auto unrolled = [] (auto count, auto&& step)
    {
        [&]<int... i> (std::integer_sequence<int, i...>) { (step (std::integral_constant<int, i> {}), ...); }
            (std::make_integer_sequence<int, decltype (count)::value> {});
    };

    for (int n = 0; n < DelayKernels::blockSize; n += vectors * width)
    {
        Native sum[vectors] {};

        // A native vector of weights at a time, each one spread over a
        // vector in turn (a shuffle within registers, cheaper than loading
        // every weight by itself).
        for (int t = 0; t < taps; t += width)
        {
            Native w;
            loadUnaligned (w, weights + t);

            // Each step's samples overlap the next step's; hidden behind an
            // empty statement, the pointer keeps the compiler from holding
            // the shared ones over in registers, which it has too few of.
            const double* x = samples + n + t;
            asm ("" : "+r" (x));

            unrolled (std::integral_constant<int, width> {}, [&] (auto k)
            {
                constexpr int lane = decltype (k)::value;
                Native spread;

                if constexpr (width == 4)
                    spread = __builtin_shufflevector (w, w, lane, lane, lane, lane);
                else
                    spread = __builtin_shufflevector (w, w, lane, lane);

                unrolled (std::integral_constant<int, vectors> {}, [&] (auto v)
                {
                    Native sample;
                    loadUnaligned (sample, x + k + v * width);
                    sum[v] += spread * sample;
                });
            });
        }

        unrolled (std::integral_constant<int, vectors> {}, [&] (auto v) { storeUnaligned (out + n + v * width, sum[v]); });
    }
}

// The steady block (as in planSteady) of an element without modulation: its
// positions are its length behind the writes, all with one fraction unless a
// power of two falls between them and rounds the later ones on a coarser
// grid. Positions only ever rise, so where the first and the last agree, all
// do, and the reads are one run along the buffer. Returns false where the
// block is not of that kind.
template <typename Native, int taps>
QUORLANE_INLINE bool readFixed (DelayKernels::Motion& m, std::uint32_t writeIndex, std::int32_t capacity,
                                const double* buffer, double* out, unsigned quality)
{
    constexpr int blockSize = DelayKernels::blockSize;
    bool oneSide;
    double start;

    if (! isSteady (m, writeIndex, capacity, oneSide, start) || ! oneSide)
        return false;

    // The same roundings as the planned positions, which have no modulation
    // to subtract.
    const double first = start - m.length, final = first + (blockSize - 1);
    const auto whole = (std::int32_t) first, finalWhole = (std::int32_t) final;
    const double fraction = first - whole;

    if (finalWhole != whole + blockSize - 1 || final - finalWhole != fraction)
        return false;

    if constexpr (taps == 0)
    {
        constexpr int width = Pack<Native, 1>::width;
        const Native f = Native {} + fraction;

        for (int n = 0; n < blockSize; n += width)
        {
            Native older, newer;
            loadUnaligned (older, buffer + whole - 1 + n);
            loadUnaligned (newer, buffer + whole + n);
            storeUnaligned (out + n, (Native) (older + (newer - older) * f));
        }
    }
    else
    {
        const auto phase = (std::int32_t) (fraction * (double) InterpolationTables::phases);
        sincRun<Native, taps> (InterpolationTables::get().row (quality, phase), buffer + whole - (taps - 1), out);
    }

    finishSteadyBlock (m);
    return true;
}

// In calls of their own, which leave the other blocks' code as it is.
template <int taps>
__attribute__ ((noinline)) bool readFixedPortable (DelayKernels::Motion& m, std::uint32_t writeIndex, std::int32_t capacity,
                                                   const double* buffer, double* out, unsigned quality) noexcept
{
    return readFixed<Doubles2, taps> (m, writeIndex, capacity, buffer, out, quality);
}

#if QUORLANE_X86_DISPATCH
template <int taps>
QUORLANE_FMA_KERNEL __attribute__ ((noinline)) bool readFixedFma (DelayKernels::Motion& m, std::uint32_t writeIndex,
                                                                   std::int32_t capacity, const double* buffer, double* out,
                                                                   unsigned quality) noexcept
{
    return readFixed<Doubles4, taps> (m, writeIndex, capacity, buffer, out, quality);
}
#endif

// Both in one function: no second call, and the steady block's reads are
// made from its positions without a second pass over them (linear reads,
// taps 0) or from the indices and table rows of all its positions (sinc
// reads).
template <typename Native, int taps, typename Plan, typename ReadFixed>
QUORLANE_INLINE void planAndReadBody (Plan plan, ReadFixed readFixed, DelayKernels::Motion& m, std::uint32_t writeIndex,
                                      int capacity, const double* buffer, double* out, unsigned quality)
{
    if (m.depth == 0.0 && m.targetDepth == 0.0 && readFixed (m, writeIndex, capacity, buffer, out, quality))
        return;

    if constexpr (taps == 0)
    {
        if (planSteady<Native> (m, writeIndex, capacity, true, [&] (int n, const auto& position, bool) QUORLANE_INLINE_LAMBDA
                                { position.readLinear (buffer, out + n); }))
            return;
    }
    else
    {
        // The positions of the whole block first: the sums of the reads
        // need every register.
        alignas (64) std::int32_t index[DelayKernels::blockSize], row[DelayKernels::blockSize];

        if (planSteady<Native> (m, writeIndex, capacity, true, [&] (int n, const auto& position, bool) QUORLANE_INLINE_LAMBDA
                                { position.splitRows (taps, index + n, row + n); }))
        {
            const double* table = InterpolationTables::get().row (quality, 0);
            sincReadsWith<Native, taps> ([table, &row] (int k) { return table + row[k]; },
                                         [buffer, &index] (int k) { return buffer + index[k] - (taps - 1); },
                                         out, DelayKernels::blockSize);
            return;
        }
    }

    alignas (64) std::int32_t index[DelayKernels::blockSize];
    alignas (64) double fraction[DelayKernels::blockSize];
    plan (m, writeIndex, capacity, index, fraction);
    interpolateBody<Native> (buffer, index, fraction, out, DelayKernels::blockSize, quality);
}

// Each quality in a function of its own, so that the compiler fits each
// one's loops to the registers by themselves.
template <int taps>
__attribute__ ((noinline)) void planAndReadPortableFor (DelayKernels::Motion& m, std::uint32_t writeIndex, int capacity,
                                                        const double* buffer, double* out, unsigned quality) noexcept
{
    planAndReadBody<Doubles2, taps> (planPortable, readFixedPortable<taps>, m, writeIndex, capacity, buffer, out, quality);
}

void interpolatePortable (const double* buffer, const std::int32_t* index, const double* fraction,
                          double* out, int count, unsigned quality) noexcept
{
    interpolateBody<Doubles2> (buffer, index, fraction, out, count, quality);
}

void allpassPortable (const double* reads, double g, double* io, double* written, int count) noexcept
{
    allpassBody<Doubles2> (reads, g, io, written, count);
}

void allpassChainPortable (const double* reads, int readStride, const double* gains, double* io, double* const* written,
                           int stages) noexcept
{
    allpassChainBody<Doubles2> (reads, readStride, gains, io, written, stages);
}

#if QUORLANE_X86_DISPATCH
QUORLANE_FMA_KERNEL __attribute__ ((noinline)) void planAnyFma (DelayKernels::Motion& m, std::uint32_t writeIndex, int capacity,
                                                                 std::int32_t* index, double* fraction) noexcept
{
    planBody<Doubles4> (m, writeIndex, capacity, index, fraction);
}

QUORLANE_FMA_KERNEL void planFma (DelayKernels::Motion& m, std::uint32_t writeIndex, int capacity,
                                  std::int32_t* index, double* fraction) noexcept
{
    if (! planSteadyBlock<Doubles4> (m, writeIndex, capacity, index, fraction))
        planAnyFma (m, writeIndex, capacity, index, fraction);
}

template <int taps>
QUORLANE_FMA_KERNEL __attribute__ ((noinline)) void planAndReadFmaFor (DelayKernels::Motion& m, std::uint32_t writeIndex,
                                                                        int capacity, const double* buffer, double* out,
                                                                        unsigned quality) noexcept
{
    planAndReadBody<Doubles4, taps> (planFma, readFixedFma<taps>, m, writeIndex, capacity, buffer, out, quality);
}

QUORLANE_FMA_KERNEL void interpolateFma (const double* buffer, const std::int32_t* index, const double* fraction,
                                         double* out, int count, unsigned quality) noexcept
{
    interpolateBody<Doubles4> (buffer, index, fraction, out, count, quality);
}

QUORLANE_FMA_KERNEL void allpassFma (const double* reads, double g, double* io, double* written, int count) noexcept
{
    allpassBody<Doubles4> (reads, g, io, written, count);
}

QUORLANE_FMA_KERNEL void allpassChainFma (const double* reads, int readStride, const double* gains, double* io,
                                          double* const* written, int stages) noexcept
{
    allpassChainBody<Doubles4> (reads, readStride, gains, io, written, stages);
}
#endif
}

const DelayKernels& DelayKernels::portable()
{
    static const DelayKernels kernels { planPortable,
                                        { planAndReadPortableFor<0>, planAndReadPortableFor<8>, planAndReadPortableFor<16>,
                                          planAndReadPortableFor<32> },
                                        interpolatePortable, allpassPortable, allpassChainPortable };
    return kernels;
}

const DelayKernels& DelayKernels::best()
{
   #if QUORLANE_X86_DISPATCH
    static const DelayKernels avx { planFma,
                                    { planAndReadFmaFor<0>, planAndReadFmaFor<8>, planAndReadFmaFor<16>, planAndReadFmaFor<32> },
                                    interpolateFma, allpassFma, allpassChainFma };

    if (InstructionSet::hasAvx2AndFma())
        return avx;
   #endif
    return portable();
}
