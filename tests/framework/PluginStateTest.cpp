#include "engine/Quorlane.h"

#include <gtest/gtest.h>

namespace
{
    juce::StringArray childNames (const juce::XmlElement& element)
    {
        juce::StringArray names;
        for (auto* child : element.getChildIterator())
            names.add (child->getTagName());
        return names;
    }

    void processWithController (Quorlane& plugin, int controller, int value)
    {
        juce::AudioBuffer<float> buffer (2, 64);
        buffer.clear();
        juce::MidiBuffer midi;
        midi.addEvent (juce::MidiMessage::controllerEvent (1, controller, value), 10);
        plugin.processBlock (buffer, midi);
    }
}

TEST (PluginState, ChildrenComeInTheirFixedOrder)
{
    Quorlane plugin;
    const auto state = plugin.buildState();
    const auto names = childNames (*state);

    const int parameters = names.indexOf ("ParametersState");
    const int presets = names.indexOf ("PresetsState");
    const int map = names.indexOf ("MidiControlMap");
    const int unique = names.indexOf ("UniqueData");

    ASSERT_TRUE (parameters >= 0 && map >= 0 && unique >= 0) << names.joinIntoString (", ").toStdString();
    EXPECT_LT (parameters, map);
    EXPECT_LT (map, unique);
    EXPECT_EQ (unique, names.size() - 1);

    if (presets >= 0)
    {
        EXPECT_LT (parameters, presets);
        EXPECT_LT (presets, map);
    }
}

TEST (PluginState, AProjectComesBackWholeIntoAFreshInstance)
{
    Quorlane source;
    source.prepareToPlay (48000.0, 64);
    source.setHostParameterValue (6, 0.8125f);
    source.setHostParameterValue (18, 0.375f);
    source.getPluginParameter (20)->setNormalisedValue (CorvelleEffect::qualityStepSize, true);

    // Bound the way a user does it: touch "FX", then move controller 33.
    auto& midi = source.getMidiControl();
    midi.setLearnMode (true);
    midi.learnFromParameter (*source.getPluginParameter (18));
    processWithController (source, 33, 127);
    midi.setLearnMode (false);
    ASSERT_EQ (midi.getParameterAt (33), source.getPluginParameter (18));

    juce::MemoryBlock chunk;
    source.getStateInformation (chunk);

    Quorlane restored;
    restored.getMidiControl().assign (5, restored.getPluginParameter (0), true);
    restored.getMidiControl().setLearnMode (true);
    restored.setStateInformation (chunk.getData(), (int) chunk.getSize());

    EXPECT_EQ (restored.buildState()->toString(), source.buildState()->toString());
    EXPECT_EQ (restored.getMidiControl().getParameterAt (33), restored.getPluginParameter (18));
    EXPECT_EQ (restored.getMidiControl().getMappedCount(), 1);
    EXPECT_FALSE (restored.getMidiControl().isLearnMode());
    EXPECT_EQ (restored.getCurrentQualityStep(), 1);
    EXPECT_EQ (restored.getPluginParameter (18)->getNormalisedValue(), 1.0f);
}
