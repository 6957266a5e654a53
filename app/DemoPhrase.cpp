#include "DemoPhrase.h"

#include <vector>

namespace
{
    constexpr double lengthSeconds = 4.0;

    struct Note
    {
        double start;     // seconds
        double frequency; // Hz
        float pan;        // -1 left .. 1 right
    };

    // Equal-power placement of a mono source.
    void addPanned (juce::AudioBuffer<float>& out, const std::vector<float>& source, int start, float pan)
    {
        const float angle = (pan + 1.0f) * juce::MathConstants<float>::pi * 0.25f;
        const float gains[] = { std::cos (angle), std::sin (angle) };
        const int count = std::min ((int) source.size(), out.getNumSamples() - start);

        for (int channel = 0; channel < 2; ++channel)
            out.addFrom (channel, start, source.data(), count, gains[channel]);
    }

    // Karplus-Strong: a burst of noise circulating in a delay one period long,
    // averaged on each pass, which is how a plucked string loses its highs.
    std::vector<float> pluck (double frequency, double sampleRate, juce::Random& random)
    {
        const int period = juce::roundToInt (sampleRate / frequency);
        std::vector<float> line ((size_t) period);

        for (auto& sample : line)
            sample = random.nextFloat() * 2.0f - 1.0f;

        std::vector<float> out ((size_t) (1.6 * sampleRate));
        float previous = 0.0f;

        for (size_t i = 0; i < out.size(); ++i)
        {
            auto& slot = line[i % (size_t) period];
            const float current = slot;
            out[i] = current;
            slot = 0.996f * 0.5f * (current + previous);
            previous = current;
        }

        return out;
    }

    // A pitched thump under a burst of noise, both dying away quickly.
    std::vector<float> drumHit (double sampleRate, juce::Random& random)
    {
        std::vector<float> out ((size_t) (0.4 * sampleRate));
        double phase = 0.0;

        for (size_t i = 0; i < out.size(); ++i)
        {
            const double t = (double) i / sampleRate;
            const double pitch = 60.0 + 90.0 * std::exp (-t * 30.0);
            phase += juce::MathConstants<double>::twoPi * pitch / sampleRate;
            const double body = std::sin (phase) * std::exp (-t * 9.0);
            const double noise = (random.nextDouble() * 2.0 - 1.0) * std::exp (-t * 40.0) * 0.5;
            out[i] = (float) (body + noise);
        }

        return out;
    }

    // One full-scale sample and its negative: the sharpest sound there is,
    // which shows the early reflections plainly.
    std::vector<float> click()
    {
        return { 1.0f, -1.0f };
    }
}

juce::AudioBuffer<float> synthesiseDemoPhrase (double sampleRate)
{
    juce::AudioBuffer<float> out (2, (int) (lengthSeconds * sampleRate));
    out.clear();
    juce::Random random (0x51a7e);

    const auto at = [sampleRate] (double seconds) { return (int) (seconds * sampleRate); };
    const Note notes[] = { { 0.10, 220.00, -0.6f }, { 0.45, 277.18, -0.2f }, { 0.80, 329.63, 0.2f },
                           { 1.15, 440.00, 0.6f },  { 1.50, 329.63, 0.0f } };

    for (const auto& note : notes)
        addPanned (out, pluck (note.frequency, sampleRate, random), at (note.start), note.pan);

    addPanned (out, drumHit (sampleRate, random), at (2.10), 0.0f);
    addPanned (out, click(), at (2.70), 0.0f);

    // Leave headroom for the reverb to add to the peaks.
    const float peak = out.getMagnitude (0, out.getNumSamples());
    out.applyGain (0.5f / peak);
    return out;
}
