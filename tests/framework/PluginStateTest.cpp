#include "engine/Quorlane.h"

#include <gtest/gtest.h>

namespace
{
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
    juce::StringArray names;
    for (auto* child : state->getChildIterator())
        names.add (child->getTagName());

    EXPECT_EQ (names, juce::StringArray ({ "ParametersState", "PresetsState", "MidiControlMap", "UniqueData" }));
}

TEST (PluginState, AProjectComesBackWholeIntoAFreshInstance)
{
    Quorlane source;
    source.prepareToPlay (48000.0, 64);
    source.getParameters()[0]->setValue (0.1234567f);
    source.setHostParameterValue (6, 0.8125f);
    source.setHostParameterValue (18, 0.375f);
    source.getPluginParameter (20)->setNormalisedValue (CorvelleEffect::qualityStepSize, ChangeOrigin::editor);

    // Bound the way a user does it: touch "FX", then move controller 33.
    auto& midi = source.getMidiControl();
    midi.setLearnMode (true);
    midi.learnFromParameter (*source.getPluginParameter (18));
    processWithController (source, 33, 127);
    juce::MessageManager::getInstance()->runDispatchLoopUntil (50);
    midi.setLearnMode (false);
    ASSERT_EQ (midi.getParameterAt (33), source.getPluginParameter (18));

    juce::MemoryBlock chunk;
    source.getStateInformation (chunk);

    // Values are written to the nearest millionth, the quality as its keyword.
    const auto xml = juce::AudioProcessor::getXmlFromBinary (chunk.getData(), (int) chunk.getSize());
    ASSERT_NE (xml, nullptr);
    EXPECT_EQ (xml->getStringAttribute ("application"), "Quorlane");
    EXPECT_EQ (xml->getChildByName ("ParametersState")->getChildElement (0)->getStringAttribute ("value"), "0.123457");
    EXPECT_EQ (xml->getChildByName ("UniqueData")->getStringAttribute ("quality"), "medium");

    Quorlane restored;
    restored.getMidiControl().assign (5, restored.getPluginParameter (0), true);
    restored.getMidiControl().setLearnMode (true);
    restored.setStateInformation (chunk.getData(), (int) chunk.getSize());

    juce::MemoryBlock again;
    restored.getStateInformation (again);
    EXPECT_EQ (again, chunk);
    EXPECT_FLOAT_EQ (restored.getPluginParameter (0)->getValue(), 0.123457f);
    EXPECT_EQ (restored.getMidiControl().getParameterAt (33), restored.getPluginParameter (18));
    EXPECT_EQ (restored.getMidiControl().getMappedCount(), 1);
    EXPECT_FALSE (restored.getMidiControl().isLearnMode());
    EXPECT_EQ (restored.getCurrentQualityStep(), 1);
    EXPECT_EQ (restored.getPluginParameter (18)->getNormalisedValue(), 1.0f);
}
