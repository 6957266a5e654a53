#include "engine/Quorlane.h"

#include <gtest/gtest.h>

namespace
{
    struct HostListener : juce::AudioProcessorListener
    {
        void audioProcessorParameterChanged (juce::AudioProcessor*, int index, float value) override
        {
            changes.add ({ index, value });
        }
        void audioProcessorChanged (juce::AudioProcessor*, const ChangeDetails&) override {}

        juce::Array<std::pair<int, float>> changes;
    };

    juce::MemoryBlock stateOf (juce::AudioProcessor& p)
    {
        juce::MemoryBlock block;
        p.getStateInformation (block);
        return block;
    }
}

TEST (HostInterface, ShowsTwentyParametersAndHidesTheInternalOnes)
{
    Quorlane plugin;
    const auto& params = plugin.getParameters();
    ASSERT_EQ (params.size(), 20);

    EXPECT_EQ (params[0]->getName (100), "Early Size");
    EXPECT_EQ (params[19]->getName (100), "Output Volume");
    EXPECT_EQ (params[18]->getName (3), "FX");
    EXPECT_EQ (params[14]->getName (3), "X F");

    // A new instance plays its first preset; the host's defaults stay the description's.
    for (int i = 0; i < params.size(); ++i)
    {
        EXPECT_TRUE (params[i]->isAutomatable());
        EXPECT_FALSE (params[i]->isMetaParameter());
        EXPECT_FLOAT_EQ (params[i]->getDefaultValue(), plugin.getDefaultPreset().values[(size_t) i]);
        EXPECT_FLOAT_EQ (params[i]->getValue(), plugin.getSlot (0)->values[(size_t) i]);
    }

    EXPECT_EQ (plugin.getHostParameterName (20), "");
    EXPECT_EQ (plugin.getHostParameterName (21), "");
    EXPECT_EQ (plugin.getHostParameterName (-1), "");
    EXPECT_EQ (plugin.getHostParameterText (21), "");
    EXPECT_EQ (plugin.getHostParameterValue (500), 0.0f);
    EXPECT_EQ (plugin.getName(), "Quorlane");
    EXPECT_EQ (plugin.getNumPrograms(), 0);
    EXPECT_TRUE (plugin.acceptsMidi());
    EXPECT_FALSE (plugin.producesMidi());

    const auto decayTime = plugin.getPluginParameter (21)->getValue();
    plugin.setHostParameterValue (21, 0.9f);
    plugin.setHostParameterValue (20, 0.9f);
    EXPECT_EQ (plugin.getPluginParameter (21)->getValue(), decayTime) << "the host cannot reach internal parameters";
    EXPECT_EQ (plugin.getPluginParameter (20)->getValue(), 0.0f);
}

TEST (HostInterface, ChangesFromTheHostAreNotEchoedButOthersAreReported)
{
    Quorlane plugin;
    HostListener listener;
    plugin.addListener (&listener);

    plugin.getParameters()[4]->setValue (0.25f);
    EXPECT_FLOAT_EQ (plugin.getPluginParameter (4)->getValue(), 0.25f);
    EXPECT_TRUE (listener.changes.isEmpty());

    plugin.getPluginParameter (6)->setNormalisedValue (0.75f, true);
    ASSERT_EQ (listener.changes.size(), 1);
    EXPECT_EQ (listener.changes[0].first, 6);
    EXPECT_FLOAT_EQ (listener.changes[0].second, 0.75f);

    plugin.getPluginParameter (20)->setNormalisedValue (1.0f, true);
    EXPECT_EQ (listener.changes.size(), 1) << "internal parameters stay away from the host";
    plugin.removeListener (&listener);
}

TEST (HostInterface, StateTravelsToAFreshInstanceExactly)
{
    Quorlane source;
    source.getParameters()[0]->setValue (0.1234567f);
    source.getParameters()[17]->setValue (1.0f);
    source.getParameterManager().findParameter ("Quality")->setNormalisedValue (0.6666667f, true);
    const auto chunk = stateOf (source);

    const auto xml = juce::AudioProcessor::getXmlFromBinary (chunk.getData(), (int) chunk.getSize());
    ASSERT_NE (xml, nullptr);
    EXPECT_TRUE (xml->hasTagName ("PluginState"));
    EXPECT_EQ (xml->getStringAttribute ("application"), "Quorlane");
    EXPECT_EQ (xml->getChildByName ("ParametersState")->getChildElement (0)->getStringAttribute ("value"), "0.123457");
    EXPECT_EQ (xml->getChildByName ("UniqueData")->getStringAttribute ("quality"), "high");

    Quorlane restored;
    restored.setStateInformation (chunk.getData(), (int) chunk.getSize());
    EXPECT_FLOAT_EQ (restored.getPluginParameter (0)->getValue(), 0.123457f);
    EXPECT_EQ (restored.getPluginParameter (17)->getValue(), 1.0f);
    EXPECT_EQ (restored.getCurrentQualityStep(), 2);
    EXPECT_EQ (stateOf (restored), chunk);
}

TEST (HostInterface, ForeignOrBrokenChunksChangeNothing)
{
    Quorlane plugin;
    plugin.getParameters()[2]->setValue (0.3f);
    const auto before = stateOf (plugin);

    juce::XmlElement foreign ("PluginState");
    foreign.setAttribute ("application", "Otherverb");
    foreign.createNewChildElement ("ParametersState")->createNewChildElement ("param")->setAttribute ("name", "Early Attenuation");
    foreign.createNewChildElement ("UniqueData")->setAttribute ("quality", "highest");

    juce::XmlElement wrongRoot ("UserSettings");
    wrongRoot.setAttribute ("application", "Quorlane");
    wrongRoot.createNewChildElement ("UniqueData")->setAttribute ("quality", "highest");

    for (auto* doc : { &foreign, &wrongRoot })
    {
        juce::MemoryBlock block;
        juce::AudioProcessor::copyXmlToBinary (*doc, block);
        plugin.setStateInformation (block.getData(), (int) block.getSize());
    }

    const char garbage[] = "VC2!\x10\x00\x00\x00<PluginState application='Quorlane'>";
    plugin.setStateInformation (garbage, sizeof (garbage));
    plugin.setStateInformation (before.getData(), 7);
    plugin.setStateInformation (nullptr, 0);

    EXPECT_EQ (stateOf (plugin), before);
}
