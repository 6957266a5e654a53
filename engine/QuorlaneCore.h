#pragma once

#include "engine/BiquadFilter.h"
#include "engine/DelayElement.h"
#include "engine/DelayElementBank.h"
#include "engine/QuorlaneMapping.h"
#include "engine/StereoBiquadFilter.h"
#include "engine/CorvelleEffectCore.h"
#include "engine/MeterHandOver.h"
#include "engine/ParameterInbox.h"
#include "engine/PresetFade.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <vector>

// The reverb engine: predelay, an early network of six modulated allpasses per
// channel with its EQ, a late network of eight per channel closed by two
// cross-coupled delays with its EQ, and the output mixer.
//
// Host blocks of any size pass through input and output rings and are
// processed in fixed blocks of 32 samples, in double precision, which gives
// the effect a constant latency of 32 samples.
class QuorlaneCore : public CorvelleEffectCore
{
public:
    static constexpr int blockSize = 32;

    // Quantities derived from the sample rate whenever it is set.
    struct RateConstants
    {
        double sampleRate, inverse, halfInverse, nyquist;
        double ratio;        // sr / 44100
        double inverseRatio; // 44100 / sr
        double k;            // 1 at 44100 Hz; scales every per-sample rate
        double kCubed;
        double smoothing, fade, meterRelease;

        // 0 .. 4 for 44100, 48000, 88200, 96000 and 192000 Hz; other rates
        // keep the class they had.
        int rateClass;

        static RateConstants forRate (double sampleRate, int previousRateClass) noexcept;
    };

    // Which of the engine's builds of its inner loops an instance runs: the
    // fastest one the processor has, or the portable one (which every
    // processor runs, and which differs only in the last bits).
    enum class Instructions { best, portable };

    explicit QuorlaneCore (Instructions instructions = Instructions::best);

    void postParameter (std::uint32_t index, float normalisedValue) noexcept override { inbox.postParameter (index, normalisedValue); }
    void postQuality (unsigned q) noexcept override { inbox.postQuality (q); }
    void postPresetChange() noexcept override { inbox.postPresetChange(); }
    void setPresetChangeTarget (PresetChangeTarget* target) noexcept override { presetChangeTarget = target; }
    bool isPresetFadeActive() const noexcept override { return fade.isActive(); }
    void requestMeters() noexcept override { meters.request(); }
    bool takeMeters (float& left, float& right) noexcept override { return meters.take (left, right); }

    void reset() override;
    void prepare (double sampleRate, int maximumBlockSize) override;
    int getLatency() const override { return blockSize; }
    void process (const float* const* inputs, float* const* outputs, int numSamples) override;
    void processMono (float* const* channels, int numSamples) override;

    // The decay estimate for a set of normalised values, in seconds.
    static double estimateDecaySeconds (const std::array<double, QuorlaneMapping::parameterCount>& values,
                                        double sampleRate) noexcept;

    unsigned getQuality() const noexcept { return quality; }
    const RateConstants& getRateConstants() const noexcept { return rate; }

    // Whether the bass cut follows the curve a prepare rebuilds it from
    // (QuorlaneMapping::preparedBassCutFrequency) rather than the knob's own,
    // as it does until the knob next moves. Any thread.
    bool isBassCutOnPreparedCurve() const noexcept { return bassCutOnPreparedCurve.load (std::memory_order_relaxed); }

private:
    // What the inbox hands over, on the engine's own thread. A setting is
    // worked out by the same instructions in every build of the inner loops
    // (never folded into the wide build's kernel), so both builds start from
    // the same coefficients.
    friend class ParameterInbox;
    __attribute__ ((noinline)) void setParameter (std::uint32_t index, float normalisedValue) noexcept;
    void setQuality (unsigned quality) noexcept;
    void beginPresetChange() noexcept { fade.begin(); }

    struct Smoothed
    {
        double value = 0.0, target = 0.0;

        void advance (double coefficient) noexcept { value = value - (value - target) * coefficient + 1e-20; }
    };

    static constexpr int earlyStages = 6;
    static constexpr int lateStages = 8;

    // The elements in build order: predelays, the early and the late chains
    // (left and right alternating) and the cross-coupled delays.
    static constexpr int earlyFirst = 2, lateFirst = earlyFirst + 2 * earlyStages;
    static constexpr int crossFirst = lateFirst + 2 * lateStages, elementCount = crossFirst + 2;

    DelayElement& predelayLine (int channel) noexcept { return elements[(size_t) channel]; }
    DelayElement& early (int chainPosition) noexcept  { return elements[(size_t) (earlyFirst + chainPosition)]; }
    DelayElement& late (int chainPosition) noexcept   { return elements[(size_t) (lateFirst + chainPosition)]; }
    DelayElement& crossDelay (int channel) noexcept   { return elements[(size_t) (crossFirst + channel)]; }

    // The longest delay, modulation included, that the element at `index`
    // (in build order) is ever asked for.
    static double longestDelaySeconds (int index) noexcept;

    void applyParameter (std::uint32_t index) noexcept;

    void processBlock (int offset) noexcept;
    void processMonoBlock (int offset) noexcept;
    bool gateOpen (int offset, int channels) noexcept;
    void silentBlock (int offset, int channels) noexcept;
    void mixAndMeter (int offset, int channels) noexcept;
    void advanceMixers() noexcept;
    bool mixersStill() const noexcept;
    void meterBlock (const double* left, const double* right) noexcept;

    // Frames host blocks into blocks of the core; block (offset) processes one.
    template <typename Block>
    void runFrames (const float* const* inputs, float* const* outputs, int channels, int numSamples, Block block) noexcept;

    // process and processMono built for AVX2 and FMA, with everything they
    // call in this file.
    void processWide (const float* const* inputs, float* const* outputs, int numSamples) noexcept;
    void processMonoWide (float* const* channels, int numSamples) noexcept;

    void recomputeAll() noexcept;
    // Silences the network: buffers, filter states, the current block. The
    // core does this itself when its network turns non-finite.
    void clearNetwork() noexcept;
    void setBassCut (double hz) noexcept;

    const DelayKernels& kernels;
    const bool wide;

    RateConstants rate;
    unsigned quality = 0;

    ParameterInbox inbox;
    MeterHandOver meters;
    PresetFade fade;
    PresetChangeTarget* presetChangeTarget = nullptr;

    std::array<double, QuorlaneMapping::parameterCount> values = QuorlaneMapping::defaultValues;

    // Framing.
    alignas (64) double ring[2][2 * blockSize] {};
    int writeIndex = blockSize, readIndex = 0, fill = 0;
    alignas (64) double work[2][blockSize] {};
    alignas (64) double earlyOut[2][blockSize] {};
    alignas (64) double crossDelayOut[2][blockSize] {};

    // Network.
    std::vector<DelayElement> elements;
    DelayElementBank stereoAllpasses, monoAllpasses;
    StereoBiquadFilter earlyEq, lateEq;
    BiquadFilter earlyEqMono, lateEqMono;

    double crossfeedState[2] {}, earlyCoefficient = 0.0;
    double lateLowState[2] {}, lateCoefficient = 0.0;
    double highPreviousIn[2] {}, highPreviousOut[2] {}, highA = 0.0, highB = 0.0;
    std::atomic<bool> bassCutOnPreparedCurve { true };

    Smoothed crossFadeMix, wetMix, dryWetMix, volumeMix;
    double feedback = 0.0;

    // Metering and the silence gate.
    double peak[2] {}, peakDecay = 1.0;
    double envelope[2] {};
    bool active[2] {};
};
