#include "engine/DelayKernels.h"

#include "engine/InterpolationTables.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#if defined(__GNUC__) && defined(__x86_64__)
 #define QUORLANE_X86_DISPATCH 1
 #define QUORLANE_TARGET_AVX __attribute__ ((target ("avx")))
 #define QUORLANE_TARGET_FMA __attribute__ ((target ("avx2,fma")))
#else
 #define QUORLANE_X86_DISPATCH 0
#endif

#define QUORLANE_INLINE inline __attribute__ ((always_inline))

namespace
{
// Generic vectors, mapped by the compiler onto the function's target: one
// SSE2 or AVX register each, or scalars where there are no such registers.
using Doubles2 = double __attribute__ ((vector_size (16)));
using Doubles4 = double __attribute__ ((vector_size (32)));
using Ints2 = std::int32_t __attribute__ ((vector_size (8)));
using Ints4 = std::int32_t __attribute__ ((vector_size (16)));

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

    // Splits positions of the mirrored buffer into the stored index of their
    // integer parts and their fractions.
    QUORLANE_INLINE void split (const std::int32_t* wrapIndex, const std::int32_t* capacity,
                                std::int32_t* index, double* fraction) const
    {
        using Ints = typename Traits<Native>::Ints;

        for (int i = 0; i < count; ++i)
        {
            const Ints whole = __builtin_convertvector (part[i], Ints);
            Ints wrap, size;
            loadUnaligned (wrap, wrapIndex + i * nativeWidth);
            loadUnaligned (size, capacity + i * nativeWidth);
            storeUnaligned (index + i * nativeWidth, (Ints) (whole >= wrap ? whole - size : whole));
            storeUnaligned (fraction + i * nativeWidth, (Native) (part[i] - __builtin_convertvector (whole, Native)));
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

// One group of lanes through one block. The arithmetic order is the
// element's definition and must not be rearranged: the read positions are
// compared bit for bit with the reference.
//
// The rare events of a block, an LFO step or the write index wrapping, are
// scheduled per lane in advance, so that the per-sample loop is straight
// vector arithmetic. The countdown falls by exactly 1 per sample (every value
// it takes is exact), so its expiry can be computed instead of counted.
template <typename P, bool gliding, bool clamped>
QUORLANE_INLINE void planLanes (DelayKernels::Lanes& s, DelayKernels::Plan& plan, int first)
{
    constexpr int width = P::width;
    constexpr int blockSize = DelayKernels::blockSize;

    P length = P::load (s.length + first);
    P depth = P::load (s.depth + first);
    P stage1 = P::load (s.stage1 + first);
    P stage2 = P::load (s.stage2 + first);
    P lfoTarget = P::load (s.lfoTarget + first);
    P base = P::load (s.writeBase + first);
    const P targetLength = P::load (s.targetLength + first);
    const P targetDepth = P::load (s.targetDepth + first);
    const P glide = P::load (s.glide + first);
    const P coefficient = P::load (s.lfoCoefficient + first);
    const P oldestOffset = P::load (s.capacity + first) - P::broadcast (64.0);
    const P tiny = P::broadcast (1e-20), one = P::broadcast (1.0);

    int nextLfo[width], nextWrap[width], countdownSetAt[width];
    double countdownSetTo[width];
    int nextEvent = blockSize;

    for (int l = 0; l < width; ++l)
    {
        const double countdown = s.countdown[first + l];
        countdownSetTo[l] = countdown;
        countdownSetAt[l] = 0;
        nextLfo[l] = countdown < 0.0 ? 0 : countdown < blockSize ? (int) countdown + 1 : blockSize;
        nextWrap[l] = (int) (2.0 * s.capacity[first + l] - s.writeBase[first + l]);
        nextEvent = std::min ({ nextEvent, nextLfo[l], nextWrap[l] });
    }

    for (int n = 0; n < blockSize; ++n)
    {
        if constexpr (gliding)
        {
            length = length - (length - targetLength) * glide + tiny;
            depth = depth - (depth - targetDepth) * glide + tiny;
        }

        if (n == nextEvent)
        {
            double lengths[width], targets[width], bases[width];
            length.store (lengths);
            lfoTarget.store (targets);
            base.store (bases);
            nextEvent = blockSize;

            for (int l = 0; l < width; ++l)
            {
                if (nextLfo[l] == n)
                {
                    targets[l] = nextLfoTarget (s.randomA[first + l], s.randomB[first + l]);
                    countdownSetTo[l] = 2.0 * lengths[l];
                    countdownSetAt[l] = n + 1;
                    nextLfo[l] = n + 2 + (int) std::min (countdownSetTo[l], (double) blockSize);
                }

                if (nextWrap[l] == n)
                {
                    bases[l] -= s.capacity[first + l];
                    nextWrap[l] = blockSize;
                }

                nextEvent = std::min ({ nextEvent, nextLfo[l], nextWrap[l] });
            }

            lfoTarget = P::load (targets);
            base = P::load (bases);
        }

        stage1 = stage1 - (stage1 - lfoTarget) * coefficient + tiny;
        stage2 = stage2 - (stage2 - stage1) * coefficient + tiny;
        const P modulation = stage2 * depth * length + tiny;
        P position = base - length - modulation;

        if constexpr (clamped)
            position = atLeast (position, base - oldestOffset);

        position.split (s.wrapIndex + first, s.wholeCapacity + first, plan.index[n] + first, plan.fraction[n] + first);
        base = base + one;
    }

    length.store (s.length + first);
    depth.store (s.depth + first);
    stage1.store (s.stage1 + first);
    stage2.store (s.stage2 + first);
    lfoTarget.store (s.lfoTarget + first);
    base.store (s.writeBase + first);

    for (int l = 0; l < width; ++l)
        s.countdown[first + l] = countdownSetTo[l] - (double) (blockSize - countdownSetAt[l]);
}

template <typename P>
QUORLANE_INLINE void planGroup (DelayKernels::Lanes& s, DelayKernels::Plan& plan, int first)
{
    bool gliding = false, clamped = false;

    for (int l = first; l < first + P::width; ++l)
    {
        gliding |= ! s.settled[l];

        // Whether the modulated delay could come near the oldest samples.
        const double longest = std::max (s.length[l], s.targetLength[l]) * (1.0 + std::max (s.depth[l], s.targetDepth[l]));
        clamped |= ! (longest + 2.0 < s.capacity[l] - 64.0);
    }

    if (gliding)
        clamped ? planLanes<P, true, true> (s, plan, first) : planLanes<P, true, false> (s, plan, first);
    else
        clamped ? planLanes<P, false, true> (s, plan, first) : planLanes<P, false, false> (s, plan, first);
}

// Eight lanes at a time, then four.
template <typename Native>
QUORLANE_INLINE void planBody (DelayKernels::Lanes& s, DelayKernels::Plan& plan, int lanes)
{
    using Eight = Pack<Native, 8 / Pack<Native, 1>::width>;
    using Four = Pack<Native, 4 / Pack<Native, 1>::width>;
    int first = 0;

    for (; first + 8 <= lanes; first += 8)
        planGroup<Eight> (s, plan, first);

    for (; first < lanes; first += 4)
        planGroup<Four> (s, plan, first);
}

QUORLANE_INLINE double linearRead (const double* buffer, std::int32_t index, double fraction)
{
    const double older = buffer[index - 1];
    return older + (buffer[index] - older) * fraction;
}

// The four sums of four values each, horizontally: result[k] = sum of s_k.
template <typename Chunk>
QUORLANE_INLINE void reduceFour (const Chunk& s0, const Chunk& s1, const Chunk& s2, const Chunk& s3, double* result)
{
    if constexpr (std::is_same_v<Chunk, Pack<Doubles4, 1>>)
    {
        const Doubles4 a = s0.part[0], b = s1.part[0], c = s2.part[0], d = s3.part[0];
        const Doubles4 ab = __builtin_shufflevector (a, b, 0, 4, 2, 6) + __builtin_shufflevector (a, b, 1, 5, 3, 7);
        const Doubles4 cd = __builtin_shufflevector (c, d, 0, 4, 2, 6) + __builtin_shufflevector (c, d, 1, 5, 3, 7);
        const Doubles4 sums = __builtin_shufflevector (ab, cd, 0, 1, 4, 5) + __builtin_shufflevector (ab, cd, 2, 3, 6, 7);
        storeUnaligned (result, sums);
    }
    else
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

// Windowed-sinc reads, four at a time: for each, the phase's taps against
// the `taps` samples ending at the integer position, summed in two running
// partial sums of four, then the four results reduced together. The strides
// are constants where the callers' layouts are known, so every address is a
// fixed offset.
template <typename Native, int taps, int stride, int outStride>
QUORLANE_INLINE void sincReads (const double* buffer, const std::int32_t* index, const double* fraction,
                                double* out, int count, const double* table)
{
    using Chunk = Pack<Native, 4 / Pack<Native, 1>::width>;

    auto weightsFor = [table, fraction] (int n) { return table + (int) (fraction[n * stride] * InterpolationTables::phases) * taps; };
    auto samplesFor = [buffer, index] (int n) { return buffer + index[n * stride] - (taps - 1); };

    int n = 0;

    for (; n + 4 <= count; n += 4)
    {
        const double* w0 = weightsFor (n);
        const double* w1 = weightsFor (n + 1);
        const double* w2 = weightsFor (n + 2);
        const double* w3 = weightsFor (n + 3);
        const double* x0 = samplesFor (n);
        const double* x1 = samplesFor (n + 1);
        const double* x2 = samplesFor (n + 2);
        const double* x3 = samplesFor (n + 3);

        // Eight independent running sums, kept in registers.
        Chunk a0 = Chunk::load (w0) * Chunk::load (x0);
        Chunk a1 = Chunk::load (w1) * Chunk::load (x1);
        Chunk a2 = Chunk::load (w2) * Chunk::load (x2);
        Chunk a3 = Chunk::load (w3) * Chunk::load (x3);
        Chunk b0 = Chunk::load (w0 + 4) * Chunk::load (x0 + 4);
        Chunk b1 = Chunk::load (w1 + 4) * Chunk::load (x1 + 4);
        Chunk b2 = Chunk::load (w2 + 4) * Chunk::load (x2 + 4);
        Chunk b3 = Chunk::load (w3 + 4) * Chunk::load (x3 + 4);

       #pragma GCC unroll 4
        for (int j = 8; j < taps; j += 8)
        {
            a0 = a0 + Chunk::load (w0 + j) * Chunk::load (x0 + j);
            a1 = a1 + Chunk::load (w1 + j) * Chunk::load (x1 + j);
            a2 = a2 + Chunk::load (w2 + j) * Chunk::load (x2 + j);
            a3 = a3 + Chunk::load (w3 + j) * Chunk::load (x3 + j);
            b0 = b0 + Chunk::load (w0 + j + 4) * Chunk::load (x0 + j + 4);
            b1 = b1 + Chunk::load (w1 + j + 4) * Chunk::load (x1 + j + 4);
            b2 = b2 + Chunk::load (w2 + j + 4) * Chunk::load (x2 + j + 4);
            b3 = b3 + Chunk::load (w3 + j + 4) * Chunk::load (x3 + j + 4);
        }

        if constexpr (outStride == 1)
        {
            reduceFour (a0 + b0, a1 + b1, a2 + b2, a3 + b3, out + n);
        }
        else
        {
            double result[4];
            reduceFour (a0 + b0, a1 + b1, a2 + b2, a3 + b3, result);

            for (int k = 0; k < 4; ++k)
                out[(n + k) * outStride] = result[k];
        }
    }

    for (; n < count; ++n)
    {
        const double* w = weightsFor (n);
        const double* x = samplesFor (n);
        double sum = 0.0;

        for (int t = 0; t < taps; ++t)
            sum += w[t] * x[t];

        out[n * outStride] = sum;
    }
}

template <typename Native, int stride, int outStride>
QUORLANE_INLINE void readsWithStrides (const double* buffer, const std::int32_t* index, const double* fraction,
                                       double* out, int count, unsigned quality)
{
    const double* table = InterpolationTables::get().row (quality, 0);

    switch (quality)
    {
        case 0:
           #pragma GCC unroll 8
            for (int n = 0; n < count; ++n)
                out[n * outStride] = linearRead (buffer, index[n * stride], fraction[n * stride]);
            break;
        case 1:  sincReads<Native, 8, stride, outStride> (buffer, index, fraction, out, count, table); break;
        case 2:  sincReads<Native, 16, stride, outStride> (buffer, index, fraction, out, count, table); break;
        default: sincReads<Native, 32, stride, outStride> (buffer, index, fraction, out, count, table); break;
    }
}

// The layouts in use: a plan column into a block (the bank), a block into a
// block (the plain delay), and single reads.
template <typename Native>
QUORLANE_INLINE void interpolateBody (const double* buffer, const std::int32_t* index, const double* fraction,
                                      int stride, double* out, int outStride, int count, unsigned quality)
{
    if (outStride == 1 && stride == DelayKernels::maxLanes)
        readsWithStrides<Native, DelayKernels::maxLanes, 1> (buffer, index, fraction, out, count, quality);
    else if (outStride == 1 && stride == 1)
        readsWithStrides<Native, 1, 1> (buffer, index, fraction, out, count, quality);
    else
        for (int n = 0; n < count; ++n)
            readsWithStrides<Native, 1, 1> (buffer, index + n * stride, fraction + n * stride, out + n * outStride, 1, quality);
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

void planPortable (DelayKernels::Lanes& s, DelayKernels::Plan& plan, int lanes) noexcept
{
    planBody<Doubles2> (s, plan, lanes);
}

void interpolatePortable (const double* buffer, const std::int32_t* index, const double* fraction,
                          int stride, double* out, int outStride, int count, unsigned quality) noexcept
{
    interpolateBody<Doubles2> (buffer, index, fraction, stride, out, outStride, count, quality);
}

void allpassPortable (const double* reads, double g, double* io, double* written, int count) noexcept
{
    allpassBody<Doubles2> (reads, g, io, written, count);
}

#if QUORLANE_X86_DISPATCH
// The read positions must round exactly as the element defines them, so the
// planner gets AVX without fused multiply-adds; the interpolation sums may
// fuse.
QUORLANE_TARGET_AVX void planAvx (DelayKernels::Lanes& s, DelayKernels::Plan& plan, int lanes) noexcept
{
    planBody<Doubles4> (s, plan, lanes);
}

QUORLANE_TARGET_FMA void interpolateFma (const double* buffer, const std::int32_t* index, const double* fraction,
                                         int stride, double* out, int outStride, int count, unsigned quality) noexcept
{
    interpolateBody<Doubles4> (buffer, index, fraction, stride, out, outStride, count, quality);
}

QUORLANE_TARGET_FMA void allpassFma (const double* reads, double g, double* io, double* written, int count) noexcept
{
    allpassBody<Doubles4> (reads, g, io, written, count);
}
#endif
}

const DelayKernels& DelayKernels::portable()
{
    static const DelayKernels kernels { planPortable, interpolatePortable, allpassPortable };
    return kernels;
}

const DelayKernels& DelayKernels::best()
{
    static const DelayKernels& kernels = []() -> const DelayKernels&
    {
       #if QUORLANE_X86_DISPATCH
        __builtin_cpu_init();

        if (__builtin_cpu_supports ("avx2") && __builtin_cpu_supports ("fma"))
        {
            static const DelayKernels avx { planAvx, interpolateFma, allpassFma };
            return avx;
        }
       #endif
        return portable();
    }();

    return kernels;
}
