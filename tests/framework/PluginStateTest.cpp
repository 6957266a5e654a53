#include "engine/Quorlane.h"
#include "tests/support/PluginBlocks.h"

#include <gtest/gtest.h>

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
    processBlocks (source, 64, 1, midiEvent (juce::MidiMessage::controllerEvent (1, 33, 127), 10));
    runMessageLoop();
    midi.setLearnMode (false);
    ASSERT_EQ (midi.getParameterAt (33), source.getPluginParameter (18));

    juce::MemoryBlock chunk;
    source.getStateInformation (chunk);

    Quorlane restored;
    restored.getMidiControl().assign (5, restored.getPluginParameter (0), true);
    restored.getMidiControl().setLearnMode (true);
    restored.prepareToPlay (48000.0, 64); // as the host runs it, at the session's rate
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

// The values presets never hold travel beside the bank: written under their
// own tag, read under the older one as well, and never a way to change a
// presetable value.
TEST (PluginState, NonPresetableValuesTravelBesideTheBank)
{
    Quorlane source;
    source.getPluginParameter (20)->setNormalisedValue (2 * CorvelleEffect::qualityStepSize, ChangeOrigin::editor);
    const auto written = source.buildState();
    const auto* presets = written->getChildByName ("PresetsState");
    ASSERT_NE (presets, nullptr);
    const auto* values = presets->getChildByName ("NotPresetableParams");
    ASSERT_NE (values, nullptr);
    ASSERT_NE (values->getChildByAttribute ("name", "Quality"), nullptr);
    EXPECT_EQ (values->getChildByAttribute ("name", "Quality")->getStringAttribute ("value"), "0.666667");
    EXPECT_EQ (values->getChildByAttribute ("name", "Late Size"), nullptr);

    Quorlane restored;
    juce::MemoryBlock chunk;
    juce::AudioProcessor::copyXmlToBinary (*juce::parseXML ("<PluginState application=\"Quorlane\"><PresetsState currentPreset=\"3\">"
                                                            "<NotPresetParams><param name=\"Quality\" value=\"1\"/>"
                                                            "<param name=\"Late Size\" value=\"0.01\"/></NotPresetParams>"
                                                            "</PresetsState></PluginState>"),
                                           chunk);
    restored.setStateInformation (chunk.getData(), (int) chunk.getSize());
    EXPECT_EQ (restored.getCurrentQualityStep(), 3);
    EXPECT_EQ (restored.getCurrentPresetIndex(), 3u);
    EXPECT_NE (restored.getPluginParameter (6)->getNormalisedValue(), 0.01f) << "Late Size is presetable";
}
