// The project state in process (live values and map coming back: WrittenDocuments; a map
// replacing an instance's: UserSettings; each format's round trip: the hosting suites).
#include "engine/Quorlane.h"
#include "tests/support/PluginBlocks.h"

#include <gtest/gtest.h>

namespace
{
    void restore (Quorlane& plugin, const juce::XmlElement& state)
    {
        juce::MemoryBlock chunk;
        juce::AudioProcessor::copyXmlToBinary (state, chunk);
        plugin.setStateInformation (chunk.getData(), (int) chunk.getSize());
    }
}

TEST (PluginState, AProjectBringsBackItsPresetAndQualityAndEndsLearning)
{
    Quorlane source;
    prepare (source, 64);
    source.changeToPreset (9);
    source.getPluginParameter (20)->setNormalisedValue (CorvelleEffect::qualityStepSize, ChangeOrigin::editor);
    const auto xml = source.buildState();

    Quorlane restored;
    restored.getMidiControl().setLearnMode (true);
    prepare (restored, 64); // as the host runs it, at the session's rate
    restore (restored, *xml);
    EXPECT_EQ (restored.getCurrentPresetIndex(), 9u);
    EXPECT_EQ (restored.getPluginParameter (BasePluginOldStyle::currentPresetNameIndex)->getText(), "Smooth Piano Ballad [d/w]");
    EXPECT_FALSE (restored.getMidiControl().isLearnMode());
    EXPECT_EQ (restored.getCurrentQualityStep(), 1);

    // A current preset beyond the slots is rejected; the bank still loads.
    auto* presets = xml->getChildByName ("PresetsState");
    ASSERT_NE (presets, nullptr);
    presets->setAttribute ("currentPreset", 200);
    presets->getChildElement (0)->getChildElement (0)->getChildElement (4)->setAttribute ("name", "Again");
    restore (restored, *xml);
    EXPECT_EQ (restored.getCurrentPresetIndex(), 9u);
    EXPECT_EQ (restored.getSlotName (4), "Again");

    // Without currentPreset the attribute reads as the integer 0.
    presets->removeAttribute ("currentPreset");
    restore (restored, *xml);
    EXPECT_EQ (restored.getCurrentPresetIndex(), 0u);
    EXPECT_EQ (restored.getPluginParameter (BasePluginOldStyle::currentPresetNameIndex)->getText(), "Cristal Cave [d/w]");

    restore (restored, *juce::parseXML ("<PluginState application='Quorlane'><ParametersState>"
                                        "<param name='FX' value='0.25'/><param name='Quality' value='1'/>"
                                        "<param name='No Such Knob' value='1'/></ParametersState></PluginState>"));
    EXPECT_EQ (restored.getPluginParameter (18)->getNormalisedValue(), 0.25f);
    EXPECT_EQ (restored.getCurrentQualityStep(), 3) << "a parameter beyond the presetable ones is set too";

    // The values presets never hold travel beside the bank (how they are
    // written is held byte for byte by WrittenDocuments), read under the older
    // tag as well, and never a way to change a presetable value.
    restore (restored, *juce::parseXML ("<PluginState application=\"Quorlane\"><PresetsState currentPreset=\"3\">"
                                        "<NotPresetParams><param name=\"Quality\" value=\"0.34\"/>"
                                        "<param name=\"Late Size\" value=\"0.01\"/></NotPresetParams></PresetsState></PluginState>"));
    EXPECT_EQ (restored.getCurrentQualityStep(), 1);
    EXPECT_EQ (restored.getCurrentPresetIndex(), 3u);
    EXPECT_NE (restored.getPluginParameter (6)->getNormalisedValue(), 0.01f) << "Late Size is presetable";
}
