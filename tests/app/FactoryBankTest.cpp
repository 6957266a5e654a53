// Every factory preset rendered and measured: its reverberation time must fit
// what its name promises, its colour where the name names one, and its level
// must neither clip a -6 dBFS phrase nor leave it near silent.
#include "DemoPhrase.h"
#include "ImpulseResponse.h"
#include "engine/QuorlaneMapping.h"
#include "tests/support/BufferRender.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{
    constexpr double sampleRate = 44100.0;

    struct Range { double low, high; };

    // The T30 each name promises (the "[d/w]" twins promise the same).
    Range promisedT30 (const juce::String& name)
    {
        const auto room = name.upToFirstOccurrenceOf (" [d/w]", false, false);

        if (juce::StringArray { "Cristal Cave", "Concert hall", "Aural Hall", "Half Empty Hall", "Big Tunnel", "Auditorium",
                                "Far Away", "Ambient Lament", "Medium Sized Cave", "Space Drones" }.contains (room))
            return { 2.5, 30.0 };

        if (juce::StringArray { "Hard Walls", "Dark Room", "Small Space", "Nice Mixing Space", "Room Number 303", "Bent Wall",
                                "Empty Club", "Ambience", "Studio In False Mirror" }.contains (room))
            return { 0.3, 1.2 };

        return { 1.5, 5.0 };
    }

    // The frequency of a sine with the same ratio of slope to level: a
    // measure of brightness, taken over the tail from 0.1 s to 1 s.
    double effectiveFrequency (const juce::AudioBuffer<float>& response)
    {
        double level = 0.0, slope = 0.0;
        const int end = std::min (response.getNumSamples(), (int) sampleRate);

        for (int channel = 0; channel < 2; ++channel)
        {
            const float* x = response.getReadPointer (channel);

            for (int i = (int) (sampleRate * 0.1); i < end; ++i)
            {
                level += (double) x[i] * x[i];
                slope += (double) (x[i] - x[i - 1]) * (x[i] - x[i - 1]);
            }
        }

        return level > 0.0 ? sampleRate / juce::MathConstants<double>::pi * std::asin (std::min (1.0, std::sqrt (slope / level) / 2.0)) : 0.0;
    }

    struct Levels { float peak; double rmsDb; };

    Levels levelsOf (const juce::AudioBuffer<float>& audio)
    {
        const int length = audio.getNumSamples();
        const double meanSquare = (std::pow (audio.getRMSLevel (0, 0, length), 2.0) + std::pow (audio.getRMSLevel (1, 0, length), 2.0)) / 2.0;
        return { audio.getMagnitude (0, length), 10.0 * std::log10 (meanSquare + 1e-30) };
    }
}

TEST (FactoryBank, EveryPresetSoundsLikeItsName)
{
    Quorlane plugin;
    // The 47 presets, their groups' names and the unused slots: the renderer's --list-presets.
    const auto groups = plugin.getGroups();

    auto phrase = synthesiseDemoPhrase (sampleRate);
    phrase.applyGain (0.5f / phrase.getMagnitude (0, phrase.getNumSamples())); // peaks at -6 dBFS
    const auto input = levelsOf (phrase);

    for (int slot = 0; slot < 47; ++slot)
    {
        const auto name = plugin.getSlotName (slot);
        SCOPED_TRACE (name.toStdString());

        // The group decides the mix: a usable balance, or nothing but reverb.
        const float fx = plugin.getSlot (slot)->values[QuorlaneMapping::dryWet];
        EXPECT_TRUE (slot >= groups[0].count ? fx == 1.0f : fx >= 0.15f && fx <= 0.6f) << fx;

        // The room itself: measured on the wet signal alone.
        const auto response = ImpulseResponse::render (PluginSettings { { { "FX", 1.0f } }, 3, name }, sampleRate);
        const auto range = promisedT30 (name);

        for (int channel = 0; channel < 2; ++channel)
        {
            const auto t30 = response.measure (channel).t30;
            ASSERT_TRUE (t30.has_value());
            EXPECT_GE (*t30, range.low) << "channel " << channel;
            EXPECT_LE (*t30, range.high) << "channel " << channel;
        }

        const double brightness = effectiveFrequency (response.samples);
        EXPECT_TRUE (! name.startsWith ("Dark Room") || brightness < 4500.0) << brightness;
        EXPECT_TRUE (! name.startsWith ("Metal Walls") || brightness > 7000.0) << brightness;

        // The phrase through the preset as it stands, dry part and all.
        const auto rendered = renderBuffer (phrase, PluginSettings { {}, 3, name }, TailLength::fixed (0.0), sampleRate);
        const auto output = levelsOf (rendered.audio);
        EXPECT_LT (output.peak, 1.0f) << "clips";
        EXPECT_GT (output.rmsDb, input.rmsDb - 12.0) << "near silent";
        EXPECT_LT (output.rmsDb, input.rmsDb + 6.0);
    }
}
