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

    enum class Decay { shortRoom, medium, longSpace };

    // What each name promises (the "[d/w]" twins promise the same).
    Decay promisedDecay (juce::String name)
    {
        name = name.upToFirstOccurrenceOf (" [d/w]", false, false);

        for (const char* longName : { "Cristal Cave", "Concert hall", "Aural Hall", "Half Empty Hall", "Big Tunnel",
                                      "Auditorium", "Far Away", "Ambient Lament", "Medium Sized Cave", "Space Drones" })
            if (name == longName)
                return Decay::longSpace;

        for (const char* shortName : { "Hard Walls", "Dark Room", "Small Space", "Nice Mixing Space", "Room Number 303",
                                       "Bent Wall", "Empty Club", "Ambience", "Studio In False Mirror" })
            if (name == shortName)
                return Decay::shortRoom;

        return Decay::medium;
    }

    struct Range { double low, high; };

    Range t30Range (Decay decay)
    {
        switch (decay)
        {
            case Decay::longSpace: return { 2.5, 30.0 };
            case Decay::shortRoom: return { 0.3, 1.2 };
            case Decay::medium:    break;
        }

        return { 1.5, 5.0 };
    }

    struct FactoryPreset
    {
        juce::String group, name;
        int slot;
        PresetRecord record;
    };

    std::vector<FactoryPreset> factoryPresets()
    {
        Quorlane plugin;
        std::vector<FactoryPreset> presets;
        int slot = 0;

        for (const auto& group : plugin.getGroups())
        {
            if (group.name != "Not used")
                for (int i = 0; i < group.count; ++i)
                    presets.push_back ({ group.name, plugin.getSlotName (slot + i), slot + i, *plugin.getSlot (slot + i) });

            slot += group.count;
        }

        return presets;
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
        float peak = 0.0f;
        double sum = 0.0;

        for (int channel = 0; channel < 2; ++channel)
            for (int i = 0; i < length; ++i)
            {
                const float x = audio.getSample (channel, i);
                peak = std::max (peak, std::abs (x));
                sum += (double) x * x;
            }

        return { peak, 10.0 * std::log10 (sum / (2.0 * length) + 1e-30) };
    }
}

TEST (FactoryBank, EveryPresetSoundsLikeItsName)
{
    const auto presets = factoryPresets();
    ASSERT_EQ (presets.size(), 47u);

    auto phrase = synthesiseDemoPhrase (sampleRate);
    phrase.applyGain (0.5f / phrase.getMagnitude (0, phrase.getNumSamples())); // peaks at -6 dBFS
    const auto input = levelsOf (phrase);

    for (const auto& preset : presets)
    {
        SCOPED_TRACE (preset.name.toStdString());

        // The group decides the mix: a usable balance, or nothing but reverb.
        const float fx = preset.record.values[QuorlaneMapping::dryWet];
        if (preset.group == "Wet")
        {
            EXPECT_EQ (fx, 1.0f);
        }
        else
        {
            EXPECT_TRUE (fx >= 0.15f && fx <= 0.6f) << fx;
        }

        // The room itself: measured on the wet signal alone.
        const auto response = ImpulseResponse::render (PluginSettings { { { "FX", 1.0f } }, 3, preset.name }, sampleRate);
        const auto range = t30Range (promisedDecay (preset.name));

        for (int channel = 0; channel < 2; ++channel)
        {
            const auto t30 = response.measure (channel).t30;
            ASSERT_TRUE (t30.has_value());
            EXPECT_GE (*t30, range.low) << "channel " << channel;
            EXPECT_LE (*t30, range.high) << "channel " << channel;
        }

        const double brightness = effectiveFrequency (response.samples);
        if (preset.name.startsWith ("Dark Room"))
        {
            EXPECT_LT (brightness, 4500.0);
        }
        else if (preset.name.startsWith ("Metal Walls"))
        {
            EXPECT_GT (brightness, 7000.0);
        }

        // The phrase through the preset as it stands, dry part and all.
        const auto rendered = renderBuffer (phrase, PluginSettings { {}, 3, preset.name }, TailLength::fixed (0.0), sampleRate);
        const auto output = levelsOf (rendered.audio);
        EXPECT_LT (output.peak, 1.0f) << "clips";
        EXPECT_GT (output.rmsDb, input.rmsDb - 12.0) << "near silent";
        EXPECT_LT (output.rmsDb, input.rmsDb + 6.0);
    }
}
