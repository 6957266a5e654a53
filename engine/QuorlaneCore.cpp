#include "engine/QuorlaneCore.h"

#include "engine/InstructionSet.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

using namespace QuorlaneMapping;

namespace
{
// The random numbers that seed the elements' LFOs. A fixed sequence gives
// every instance the same modulation, so equal input gives equal output.
class SeedSequence
{
public:
    std::uint32_t next() noexcept
    {
        state = state * 1103515245u + 12345u;
        return (state >> 16) & 0x7fffu;
    }

private:
    std::uint32_t state = 1;
};

// The network's one-pole filters, x - (x - s) c for the low pass and
// (in - previous in) b + a previous out for the high pass, each with its
// 1e-20. Written so that the previous output waits for one multiply and one
// add (not three or four steps in a row), which is what limits how fast the
// recursion runs; the result differs from the other order in the last bits.
template <typename T>
inline T onePole (T x, T previous, double c) noexcept
{
    return (x - x * c + 1e-20) + previous * c;
}

template <typename T>
inline T highPass (T in, T previousIn, T previousOut, double a, double b) noexcept
{
    return ((in - previousIn) * b + 1e-20) + a * previousOut;
}

using Pair = double __attribute__ ((vector_size (16)));
using Floats = float __attribute__ ((vector_size (8)));

constexpr int ringMask = 2 * QuorlaneCore::blockSize - 1;
constexpr double floatMax = std::numeric_limits<float>::max();

// Whether four blocks hold only finite numbers: x - x is 0 for those and NaN
// for NaN and infinity. Four lanes of pairs keep the sums independent.
bool isFinite (const double* a, const double* b, const double* c, const double* d) noexcept
{
    Pair sum[4] {};

    for (int n = 0; n < QuorlaneCore::blockSize; n += 2)
    {
        const Pair x[4] = { { a[n], a[n + 1] }, { b[n], b[n + 1] }, { c[n], c[n + 1] }, { d[n], d[n + 1] } };

        for (int k = 0; k < 4; ++k)
            sum[k] += x[k] - x[k];
    }

    const Pair total = (sum[0] + sum[1]) + (sum[2] + sum[3]);
    return total[0] + total[1] == 0.0;
}
}

QuorlaneCore::RateConstants QuorlaneCore::RateConstants::forRate (double sr, int previousRateClass) noexcept
{
    RateConstants r;
    r.sampleRate = sr;
    r.inverse = 1.0 / sr;
    r.halfInverse = 1.0 / (2.0 * sr);
    r.nyquist = sr / 2.0;
    r.ratio = sr * 2.2675736961451248e-5;
    r.inverseRatio = 44100.0 / sr;
    r.k = 2.0 * (1.0 - std::pow (0.5, r.inverseRatio));
    r.kCubed = r.k * r.k * r.k;
    r.smoothing = r.k * 0.002;
    r.fade = r.k * 0.005;
    r.meterRelease = r.k * 0.0001;

    r.rateClass = sr == 44100.0 ? 0 : sr == 48000.0 ? 1 : sr == 88200.0 ? 2
                : sr == 96000.0 ? 3 : sr == 192000.0 ? 4 : previousRateClass;
    return r;
}

// The sizes and the predelay are longest at the top of their ranges.
double QuorlaneCore::longestDelaySeconds (int index) noexcept
{
    const double modulated = 1.0 + modulationDepth (1.0);

    if (index < earlyFirst)
        return predelaySeconds (1.0);

    if (index < lateFirst)
        return chainLength (1.0 / earlySizeFrequency (1.0), index - earlyFirst) * modulated;

    if (index < crossFirst)
        return chainLength (1.0 / pitchFrequency (lateSemitones (1.0)), index - lateFirst) * modulated;

    const double offset = index == crossFirst ? leftCrossOffset : rightCrossOffset;
    return 1.0 / pitchFrequency (lateSemitones (1.0) - offset);
}

QuorlaneCore::QuorlaneCore (Instructions instructions)
    : kernels (instructions == Instructions::best ? DelayKernels::best() : DelayKernels::portable()),
      wide (instructions == Instructions::best && InstructionSet::hasAvx2AndFma()),
      rate (RateConstants::forRate (44100.0, 0)),
      stereoAllpasses (kernels),
      monoAllpasses (kernels)
{
    // All built for 44100 Hz until prepared.
    SeedSequence seeds;
    elements.reserve (elementCount);

    for (int i = 0; i < elementCount; ++i)
    {
        const auto a = seeds.next();
        const auto b = seeds.next();
        elements.emplace_back (a, b, longestDelaySeconds (i));
    }

    // Stereo lanes follow the chain order; the mono path runs the left half.
    for (int i = 0; i < 2 * earlyStages; ++i)
        stereoAllpasses.add (early (i));

    for (int i = 0; i < 2 * lateStages; ++i)
        stereoAllpasses.add (late (i));

    for (int i = 0; i < earlyStages; ++i)
        monoAllpasses.add (early (2 * i));

    for (int i = 0; i < lateStages; ++i)
        monoAllpasses.add (late (2 * i));

    recomputeAll();
}

// Everything the signal has left behind goes: the rings, the network's
// buffers and filter states, the gate's envelopes and the meters' peaks. The
// settings and their glides stay.
void QuorlaneCore::reset()
{
    std::memset (ring, 0, sizeof (ring));
    writeIndex = blockSize;
    readIndex = 0;
    fill = 0;

    clearNetwork();

    std::fill (std::begin (envelope), std::end (envelope), 0.0);
    std::fill (std::begin (active), std::end (active), false);
    std::fill (std::begin (peak), std::end (peak), 0.0);
}

void QuorlaneCore::clearNetwork() noexcept
{
    std::memset (work, 0, sizeof (work));
    std::memset (earlyOut, 0, sizeof (earlyOut));
    std::memset (crossDelayOut, 0, sizeof (crossDelayOut));

    for (auto& e : elements)
        e.clear();

    earlyEq.clear();
    lateEq.clear();
    earlyEqMono.clear();
    lateEqMono.clear();

    std::fill (std::begin (crossfeedState), std::end (crossfeedState), 0.0);
    std::fill (std::begin (lateLowState), std::end (lateLowState), 0.0);
    std::fill (std::begin (highPreviousIn), std::end (highPreviousIn), 0.0);
    std::fill (std::begin (highPreviousOut), std::end (highPreviousOut), 0.0);
}

void QuorlaneCore::prepare (double sampleRate, int)
{
    // Settings posted since the last block are part of what the network starts from.
    inbox.deliverTo (*this);
    rate = RateConstants::forRate (sampleRate, rate.rateClass);

    for (auto& e : elements)
        e.prepare (sampleRate);

    reset();
    recomputeAll();
}

// Every quantity from the stored values, without glides: the state a fresh
// instance or a new sample rate starts from.
void QuorlaneCore::recomputeAll() noexcept
{
    const double sr = rate.sampleRate;

    // The preset fade runs out in about 1400 samples at 44100 Hz (30 ms):
    // long enough not to click, short enough to feel immediate.
    fade.setCoefficient (rate.fade);
    peakDecay = 1.0 - rate.meterRelease;

    // Frequency, gain and bandwidth are consecutive parameters.
    const auto tune = [this, sr] (BiquadTuning& tuning, std::uint32_t frequency)
    {
        tuning.prepare (sr, eqFrequency (values[frequency]), eqGainDb (values[frequency + 1]), eqBandwidth (values[frequency + 2]));
    };

    tune (earlyEq.getTuning(), earlyEqFrequency);
    tune (earlyEqMono.getTuning(), earlyEqFrequency);
    tune (lateEq.getTuning(), lateEqFrequency);
    tune (lateEqMono.getTuning(), lateEqFrequency);

    for (std::uint32_t i = 0; i < parameterCount; ++i)
        applyParameter (i);

    // Until the knob next moves, the bass cut follows the curve without the
    // offset that a knob change applies.
    setBassCut (preparedBassCutFrequency (values[lateBassCut]));
    bassCutOnPreparedCurve.store (true, std::memory_order_relaxed);

    for (auto& e : elements)
        e.init (e.getTargetLength(), e.getTargetDepth(), e.getCoefficient());

    for (auto* s : { &crossFadeMix, &wetMix, &dryWetMix, &volumeMix })
        s->value = s->target;
}

void QuorlaneCore::setParameter (std::uint32_t index, float normalisedValue) noexcept
{
    if (index >= parameterCount)
        return;

    values[index] = std::clamp ((double) normalisedValue, 0.0, 1.0);
    applyParameter (index);
}

void QuorlaneCore::setBassCut (double hz) noexcept
{
    highA = onePoleCoefficient (hz, rate.sampleRate) + 1e-20;
    highB = (highA + 1.0) / 2.0 + 1e-20;
}

void QuorlaneCore::applyParameter (std::uint32_t index) noexcept
{
    const double p = values[index];
    const double sr = rate.sampleRate;

    switch (index)
    {
        case earlySize:
        {
            double length = sr / earlySizeFrequency (p);

            for (int i = 0; i < 2 * earlyStages; ++i, length *= elementRatio)
                early (i).setLength (length);

            break;
        }

        case earlyDiffusion:
            for (int i = 0; i < 2 * earlyStages; ++i)
                early (i).setCoefficient (earlyDiffusionCoefficient (p));
            break;

        case earlyAttenuation: earlyCoefficient = onePoleCoefficient (attenuationFrequency (p), sr); break;

        case earlyEqFrequency:
            earlyEq.getTuning().setFrequency (eqFrequency (p));
            earlyEqMono.getTuning().setFrequency (eqFrequency (p));
            break;

        case earlyEqGain:
            earlyEq.getTuning().setGain (eqGainDb (p));
            earlyEqMono.getTuning().setGain (eqGainDb (p));
            break;

        case earlyEqBandwidth:
            earlyEq.getTuning().setBandwidth (eqBandwidth (p));
            earlyEqMono.getTuning().setBandwidth (eqBandwidth (p));
            break;

        case lateSize:
        {
            const double semitones = lateSemitones (p);
            double length = sr / pitchFrequency (semitones);

            for (int i = 0; i < 2 * lateStages; ++i, length *= elementRatio)
                late (i).setLength (length);

            crossDelay (0).setLength (sr / pitchFrequency (semitones - leftCrossOffset));
            crossDelay (1).setLength (sr / pitchFrequency (semitones - rightCrossOffset));
            break;
        }

        case lateDiffusion:
            for (int i = 0; i < 2 * lateStages; ++i)
                late (i).setCoefficient (lateDiffusionCoefficient (p));
            break;

        case lateFeedback:    feedback = feedbackGain (p); break;
        case lateAttenuation: lateCoefficient = onePoleCoefficient (attenuationFrequency (p), sr); break;
        case lateBassCut:
            setBassCut (bassCutFrequency (p));
            bassCutOnPreparedCurve.store (false, std::memory_order_relaxed);
            break;

        case lateEqFrequency:
            lateEq.getTuning().setFrequency (eqFrequency (p));
            lateEqMono.getTuning().setFrequency (eqFrequency (p));
            break;

        case lateEqGain:
            lateEq.getTuning().setGain (eqGainDb (p));
            lateEqMono.getTuning().setGain (eqGainDb (p));
            break;

        case lateEqBandwidth:
            lateEq.getTuning().setBandwidth (eqBandwidth (p));
            lateEqMono.getTuning().setBandwidth (eqBandwidth (p));
            break;

        case crossFade: crossFadeMix.target = p; break;

        case modulation:
            // Only the allpass chains are modulated; the predelays and the
            // cross-coupled delays are plain delays.
            for (int i = 0; i < 2 * earlyStages; ++i)
                early (i).setDepth (modulationDepth (p));

            for (int i = 0; i < 2 * lateStages; ++i)
                late (i).setDepth (modulationDepth (p));
            break;

        case predelay:
            predelayLine (0).setLength (predelaySeconds (p) * sr);
            predelayLine (1).setLength (predelaySeconds (p) * sr);
            break;

        case wetGain:      wetMix.target = wetGainFactor (p); break;
        case dryWet:       dryWetMix.target = p; break;
        case outputVolume: volumeMix.target = volumeFactor (p); break;
        default: break;
    }
}

// A fitted estimate of the time the tail takes to fall by 100 dB.
double QuorlaneCore::estimateDecaySeconds (const std::array<double, parameterCount>& v, double sampleRate) noexcept
{
    const double r = 44100.0 / sampleRate;
    const double earlyFirst = sampleRate / earlySizeFrequency (v[earlySize]);
    const double semitones = lateSemitones (v[lateSize]);
    const double lateFirst = sampleRate / pitchFrequency (semitones);
    const double leftCross = sampleRate / pitchFrequency (semitones - leftCrossOffset);
    const double predelayLength = predelaySeconds (v[predelay]) * sampleRate;
    double d;

    if (v[crossFade] < 0.1)
    {
        const double g = earlyDiffusionCoefficient (v[earlyDiffusion]);
        d = ((g * 41.59999999999993 - 25.03999999999991) * g + 13.843999999999973 + 1e-20) * r * earlyFirst;
    }
    else
    {
        const double g = lateDiffusionCoefficient (v[lateDiffusion]);
        const double b = (89580.7308855083 - (g * 7530.716911570022 + r * lateFirst * 0.26112525671395515))
                       / (1.0 - (r * lateFirst * 4.68951007573023e-5 + g * 0.1603692452634422));
        d = (std::log (1e-5) / std::log (feedbackGain (v[lateFeedback])) + 1.0) * leftCross * r + b + 1e-20;
    }

    return (r * predelayLength + d) / (r * 44100.0);
}

void QuorlaneCore::setQuality (unsigned q) noexcept
{
    if (q <= 3)
        quality = q;
}

template <typename Block>
void QuorlaneCore::runFrames (const float* const* inputs, float* const* outputs, int channels, int numSamples,
                              Block block) noexcept
{
    for (int done = 0; done < numSamples;)
    {
        const int count = std::min (numSamples - done, blockSize - fill);

        // The span ends with the block it fills, so it never wraps in the
        // ring. NaN and infinity count as silence, for the network and the
        // dry path: x - x is 0 only for finite x.
        for (int c = 0; c < channels; ++c)
        {
            const float* in = inputs[c] + done;
            double* to = ring[c] + writeIndex;

            for (int i = 0; i < count; ++i)
            {
                const double x = in[i];
                to[i] = x - x == 0.0 ? x : 0.0;
            }
        }

        writeIndex = (writeIndex + count) & ringMask;
        fill += count;

        if (fill == blockSize)
        {
            fill = 0;
            inbox.deliverTo (*this);
            block (writeIndex == 0 ? blockSize : 0);
        }

        // The read index trails the write index by one block: the latency.
        for (int c = 0; c < channels; ++c)
        {
            const double* from = ring[c] + readIndex;
            float* out = outputs[c] + done;

            for (int i = 0; i < count; ++i)
                out[i] = (float) from[i];
        }

        readIndex = (readIndex + count) & ringMask;
        done += count;
    }

    meters.publish (peak[0], peak[1]);
}

void QuorlaneCore::process (const float* const* inputs, float* const* outputs, int numSamples)
{
    if (wide)
        processWide (inputs, outputs, numSamples);
    else
        runFrames (inputs, outputs, 2, numSamples, [this] (int offset) { processBlock (offset); });
}

void QuorlaneCore::processMono (float* const* channels, int numSamples)
{
    if (wide)
        processMonoWide (channels, numSamples);
    else
        runFrames (channels, channels, 1, numSamples, [this] (int offset) { processMonoBlock (offset); });
}

QUORLANE_FMA_KERNEL void QuorlaneCore::processWide (const float* const* inputs, float* const* outputs, int numSamples) noexcept
{
    runFrames (inputs, outputs, 2, numSamples, [this] (int offset) { processBlock (offset); });
}

QUORLANE_FMA_KERNEL void QuorlaneCore::processMonoWide (float* const* channels, int numSamples) noexcept
{
    runFrames (channels, channels, 1, numSamples, [this] (int offset) { processMonoBlock (offset); });
}

// Copies the block to the work buffers and reports whether the network runs.
// Any non-zero input opens the gate of both channels; the tail closes it when
// either channel's envelope has decayed.
bool QuorlaneCore::gateOpen (int offset, int channels) noexcept
{
    // A sample is not zero where any bit but the sign is set.
    std::uint64_t bits = 0;

    for (int c = 0; c < channels; ++c)
    {
        std::memcpy (work[c], ring[c] + offset, sizeof (work[c]));

        for (int n = 0; n < blockSize; ++n)
        {
            std::uint64_t b;
            std::memcpy (&b, work[c] + n, sizeof b);
            bits |= b;
        }
    }

    const bool sound = (bits & ~(std::uint64_t { 1 } << 63)) != 0;

    if (sound)
    {
        active[0] = active[1] = true;
        envelope[0] = envelope[1] = 1.0;
    }

    return active[0] && active[1];
}

void QuorlaneCore::processBlock (int offset) noexcept
{
    if (! gateOpen (offset, 2))
    {
        silentBlock (offset, 2);
        return;
    }

    predelayLine (0).process (work[0], work[0], quality, kernels);
    predelayLine (1).process (work[1], work[1], quality, kernels);

    {
        Pair s { crossfeedState[0], crossfeedState[1] };

        for (int n = 0; n < blockSize; ++n)
        {
            const Pair x { 0.85 * work[0][n] + 0.15 * work[1][n], 0.15 * work[0][n] + 0.85 * work[1][n] };
            s = onePole (x, s, earlyCoefficient);
            work[0][n] = s[0];
            work[1][n] = s[1];
        }

        crossfeedState[0] = s[0];
        crossfeedState[1] = s[1];
    }

    stereoAllpasses.beginBlock (quality);

    stereoAllpasses.processChain (0, 2, earlyStages, work[0]);
    stereoAllpasses.processChain (1, 2, earlyStages, work[1]);

    earlyEq.process (work[0], work[1]);
    std::memcpy (earlyOut, work, sizeof (work));

    {
        Pair low { lateLowState[0], lateLowState[1] };
        Pair previousIn { highPreviousIn[0], highPreviousIn[1] };
        Pair previousOut { highPreviousOut[0], highPreviousOut[1] };

        for (int n = 0; n < blockSize; ++n)
        {
            const Pair x { work[0][n], work[1][n] };
            low = onePole (x, low, lateCoefficient);
            previousOut = highPass (low, previousIn, previousOut, highA, highB);
            previousIn = low;

            // Each channel is fed back from the other channel's delay.
            work[0][n] = previousOut[0] + feedback * crossDelayOut[1][n];
            work[1][n] = previousOut[1] + feedback * crossDelayOut[0][n];
        }

        lateLowState[0] = low[0];           lateLowState[1] = low[1];
        highPreviousIn[0] = previousIn[0];  highPreviousIn[1] = previousIn[1];
        highPreviousOut[0] = previousOut[0]; highPreviousOut[1] = previousOut[1];
    }

    stereoAllpasses.processChain (2 * earlyStages, 2, lateStages, work[0]);
    stereoAllpasses.processChain (2 * earlyStages + 1, 2, lateStages, work[1]);

    crossDelay (0).process (work[0], crossDelayOut[0], quality, kernels);
    crossDelay (1).process (work[1], crossDelayOut[1], quality, kernels);

    lateEq.process (work[0], work[1]);

    if (! isFinite (work[0], work[1], earlyOut[0], earlyOut[1]))
        clearNetwork();

    mixAndMeter (offset, 2);
}

void QuorlaneCore::processMonoBlock (int offset) noexcept
{
    if (! gateOpen (offset, 1))
    {
        silentBlock (offset, 1);
        return;
    }

    double* x = work[0];
    predelayLine (0).process (x, x, quality, kernels);

    double s = crossfeedState[0];

    for (int n = 0; n < blockSize; ++n)
        x[n] = s = onePole (x[n], s, earlyCoefficient);

    crossfeedState[0] = s;

    monoAllpasses.beginBlock (quality);

    monoAllpasses.processChain (0, 1, earlyStages, x);

    earlyEqMono.process (x);
    std::memcpy (earlyOut[0], x, sizeof (work[0]));

    double low = lateLowState[0], previousIn = highPreviousIn[0], previousOut = highPreviousOut[0];

    for (int n = 0; n < blockSize; ++n)
    {
        low = onePole (x[n], low, lateCoefficient);
        previousOut = highPass (low, previousIn, previousOut, highA, highB);
        previousIn = low;
        x[n] = previousOut + feedback * crossDelayOut[0][n];
    }

    lateLowState[0] = low;
    highPreviousIn[0] = previousIn;
    highPreviousOut[0] = previousOut;

    monoAllpasses.processChain (earlyStages, 1, lateStages, x);

    crossDelay (0).process (x, crossDelayOut[0], quality, kernels);
    lateEqMono.process (x);

    if (! isFinite (x, x, earlyOut[0], earlyOut[0]))
        clearNetwork();

    mixAndMeter (offset, 1);
}

void QuorlaneCore::advanceMixers() noexcept
{
    // The new preset's values arrive through the inbox like any other
    // change, and are taken here, in the silence, rather than a block later.
    if (fade.isActive() && fade.advance (rate.sampleRate) && presetChangeTarget != nullptr)
    {
        presetChangeTarget->applyPendingPresetChange();
        inbox.deliverTo (*this);
    }

    crossFadeMix.advance (rate.smoothing);
    wetMix.advance (rate.smoothing);
    dryWetMix.advance (rate.smoothing);
    volumeMix.advance (rate.smoothing);
}

// The mixer writes the result over the block's input in the ring, where the
// framing reads it out one block later. A mono render runs the same pair
// arithmetic with its one channel in both lanes.
void QuorlaneCore::mixAndMeter (int offset, int channels) noexcept
{
    const int last = channels - 1;
    const Pair top { floatMax, floatMax };
    double* left = ring[0] + offset;
    double* right = ring[last] + offset;

    if (mixersStill())
    {
        // Gains that a step would not change: the same arithmetic, a channel
        // at a time and two samples at once.
        const Pair crossFade = Pair {} + crossFadeMix.value, wet = Pair {} + wetMix.value;
        const Pair fx = Pair {} + dryWetMix.value, volume = Pair {} + volumeMix.value;

        for (int c = 0; c < channels; ++c)
        {
            double* io = ring[c] + offset;

            for (int n = 0; n < blockSize; n += 2)
            {
                Pair early, late, dry;
                std::memcpy (&early, earlyOut[c] + n, sizeof early);
                std::memcpy (&late, work[c] + n, sizeof late);
                std::memcpy (&dry, io + n, sizeof dry);

                const Pair x = early + (late - early) * crossFade;
                Pair out = ((wet * x - dry) * fx + dry) * volume + 1e-20;
                out = out > top ? top : out;
                out = out < -top ? -top : out;
                out = __builtin_convertvector (__builtin_convertvector (out, Floats), Pair);
                std::memcpy (io + n, &out, sizeof out);
            }
        }

        meterBlock (left, right);
        return;
    }

    for (int n = 0; n < blockSize; ++n)
    {
        advanceMixers();

        const Pair early { earlyOut[0][n], earlyOut[last][n] };
        const Pair late { work[0][n], work[last][n] };
        const Pair dry { left[n], right[n] };
        const Pair x = early + (late - early) * crossFadeMix.value;
        Pair out = ((wetMix.value * x - dry) * dryWetMix.value + dry) * volumeMix.value + 1e-20;

        // A huge input can leave the mix beyond float range, where rounding would make it infinite.
        out = out > top ? top : out;
        out = out < -top ? -top : out;
        out = __builtin_convertvector (__builtin_convertvector (out, Floats), Pair);

        if (fade.isActive())
            out *= fade.getGain();

        left[n] = out[0];
        right[n] = out[1];
    }

    meterBlock (left, right);
}

// Whether a block of mixer steps would leave every gain where it is: no
// preset fade runs and each smoother sits on its fixed point.
bool QuorlaneCore::mixersStill() const noexcept
{
    if (fade.isActive())
        return false;

    for (const auto* s : { &crossFadeMix, &wetMix, &dryWetMix, &volumeMix })
    {
        Smoothed next = *s;
        next.advance (rate.smoothing);

        if (next.value != s->value)
            return false;
    }

    return true;
}

// A gated block: the mixers and the preset fade keep time, the output is
// exact zeros, and the network is left untouched.
void QuorlaneCore::silentBlock (int offset, int channels) noexcept
{
    static constexpr double zeros[blockSize] {};

    if (! mixersStill())
        for (int n = 0; n < blockSize; ++n)
            advanceMixers();

    for (int c = 0; c < channels; ++c)
        std::fill_n (ring[c] + offset, blockSize, 0.0);

    meterBlock (zeros, zeros);
}

// Held peaks for the meters, and the envelopes that close the gate.
void QuorlaneCore::meterBlock (const double* left, const double* right) noexcept
{
    const auto& table = MeterHandOver::getTable();
    Pair peaks { peak[0], peak[1] }, envelopes { envelope[0], envelope[1] }, quietest { 1.0, 1.0 };

    // The table positions of the whole block first, clamped to the table
    // (anything not above 0, NaN included, reads its first entry).
    std::int32_t indices[2][blockSize];

    for (int c = 0; c < 2; ++c)
    {
        const double* samples = c == 0 ? left : right;

        for (int n = 0; n < blockSize; ++n)
        {
            const double position = samples[n] * 100.0 + 200.0;
            const double above = position >= 0.0 ? position : 0.0;
            indices[c][n] = (std::int32_t) (above < (double) (MeterHandOver::tableSize - 1) ? above : (double) (MeterHandOver::tableSize - 1));
        }
    }

    for (int n = 0; n < blockSize; ++n)
    {
        const Pair sample { left[n], right[n] };
        const Pair level { table[(size_t) indices[0][n]], table[(size_t) indices[1][n]] };

        peaks = peaks < level ? level : peaks;
        peaks = peaks * peakDecay + 1e-20;

        // Only positive excursions raise the envelope.
        envelopes = (peakDecay + 1e-20) * envelopes + 1e-20;
        envelopes = envelopes < sample ? sample : envelopes;
        quietest = envelopes < quietest ? envelopes : quietest;
    }

    for (int c = 0; c < 2; ++c)
    {
        peak[c] = peaks[c];
        envelope[c] = envelopes[c];
        active[c] = active[c] && ! (quietest[c] < 2e-5);
    }
}
