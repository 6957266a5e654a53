// Loads the VST3 and LV2 builds through JUCE's own plug-in hosting, as a DAW
// would: scan, instantiate, read the parameters, process audio and carry the
// state over to a second instance.

#include <juce_audio_processors/juce_audio_processors.h>

#include "../support/EditorFollowWatch.h"
#include "../support/HostedFormats.h"
#include "../support/ParameterNames.h"
#include "../support/PluginBlocks.h"
#include "../support/SavedPluginState.h"
#include "../support/ScopedConfigHome.h"

#include <gtest/gtest.h>


namespace
{
    std::unique_ptr<juce::XmlElement> pluginStateInside (const juce::MemoryBlock& hostState)
    {
        const auto xml = juce::AudioProcessor::getXmlFromBinary (hostState.getData(), (int) hostState.getSize());
        return pluginStateIn (xml != nullptr ? xml->toString() : hostState.toString());
    }

    using HostedPlugin = ::testing::TestWithParam<HostedFormat>;
}

// Everything a project keeps: parameters, the controller map and the quality
// (and whatever else the plug-in saves; the whole saved state is compared).
// The map and the quality come from user settings that the fresh instance
// does not share, so only the restored state can bring them back.
TEST_P (HostedPlugin, StateRoundTripsIntoAFreshInstance)
{
    const ScopedConfigHome home;
    const auto mapFile = [&] (const char* param, int controller)
    {
        auto file = home.getFolder().getChildFile (juce::String (param) + ".qlmidi");
        file.replaceWithText ("<MidiControlMap name=\"m\" application=\"Quorlane\"><assign param=\"" + juce::String (param)
                              + "\" CC=\"" + juce::String (controller) + "\"/></MidiControlMap>");
        return file.getFullPathName();
    };
    // The first instance starts from a bank of the user's own, whose slot
    // names the second instance (on the factory bank) can only learn from the
    // saved state.
    const auto bankFile = home.getFolder().getChildFile ("session.qlprsb");
    bankFile.replaceWithText ("<PresetBank name=\"Session\"><PresetGroup name=\"Mine\">"
                              "<Preset application=\"Quorlane\" name=\"Vocal Tweak\"><param name=\"Late Size\" value=\"0.25\"/></Preset>"
                              "<Preset application=\"Quorlane\" name=\"Drum Room Edit\"><param name=\"Late Size\" value=\"0.5\"/></Preset>"
                              "</PresetGroup></PresetBank>");
    const auto settings = [&] (const char* quality, const juce::String& map, const juce::String& presets)
    {
        home.writeSettings ("<QualitySettings default=\"" + juce::String (quality) + "\"/><ResourcesSettings><MidiCCMap file=\""
                            + map + "\"/>" + presets + "</ResourcesSettings>");
    };

    settings ("high", mapFile ("FX", 74),
              "<Presets default=\"userDefinedPresets\" file=\"" + bankFile.getFullPathName() + "\"/>");
    auto source = instantiateHosted (GetParam());
    ASSERT_NE (source, nullptr);

    // A program change from the host chooses the current preset.
    processBlocks (*source, 256, 1, midiEvent (juce::MidiMessage::programChange (1, 1)));

    parameterNamed (*source, "Late Feedback")->setValueNotifyingHost (0.875f);
    parameterNamed (*source, "Predelay")->setValueNotifyingHost (0.125f);
    // Some formats deliver parameter changes and restored state with the next
    // processed block, as a host's audio thread would.
    processBlocks (*source, 256, 2);
    runMessageLoop();

    juce::MemoryBlock state;
    source->getStateInformation (state);
    const auto saved = pluginStateInside (state);
    ASSERT_NE (saved, nullptr);
    // (That the state holds the slots' names, the quality and the map is
    // WrittenDocuments', whose state holds them byte for byte.)
    const auto* presetsState = saved->getChildByName ("PresetsState");
    ASSERT_NE (presetsState, nullptr);
    EXPECT_EQ (presetsState->getIntAttribute ("currentPreset"), 1) << "the program change is in the state";

    settings ("low", mapFile ("Late Size", 74), "<Presets default=\"factoryPresets\"/>");
    auto restored = instantiateHosted (GetParam());
    ASSERT_NE (restored, nullptr);

    juce::MemoryBlock fresh;
    restored->getStateInformation (fresh);
    EXPECT_NE (fresh, state);

    restored->setStateInformation (state.getData(), (int) state.getSize());
    processBlocks (*restored, 256, 2);
    runMessageLoop();

    juce::MemoryBlock restoredState;
    restored->getStateInformation (restoredState);
    EXPECT_EQ (restoredState, state) << "everything saved comes back";
    EXPECT_NEAR (parameterNamed (*restored, "Late Feedback")->getValue(), 0.875f, 1e-6f);
    EXPECT_NEAR (parameterNamed (*restored, "Predelay")->getValue(), 0.125f, 1e-6f);

    // The restored map drives "FX" from controller 74 (not "Late Size"): at 0 the output
    // turns fully dry, the impulse back 32 samples late (the latency VST2 and CLAP report).
    processBlocks (*restored, 256, 1, midiEvent (juce::MidiMessage::controllerEvent (1, 74, 0)));
    processBlocks (*restored, 256, 60);
    runMessageLoop();
    juce::AudioBuffer<float> dry (2, 256);
    dry.clear();
    dry.setSample (0, 0, 0.5f);
    dry.setSample (1, 0, -0.5f);
    juce::MidiBuffer none;
    restored->processBlock (dry, none);
    EXPECT_NEAR (dry.getSample (0, 32), 0.5f, 1e-6f);
    EXPECT_NEAR (dry.getSample (1, 32), -0.5f, 1e-6f);
}

// As a DAW runs a plug-in: the instance made on a host thread, showing the
// twenty parameters (and only the wrapper's own besides: a bypass switch, MIDI
// controller slots), the skinned editor open at the background's size,
// automation of "Late Size" played on an audio thread in real time, the
// host's message loop left to run; with automatic storing on, the value is
// stored into the current preset.
TEST_P (HostedPlugin, AutomationFromTheHostsThreadsIsShownAndStored)
{
    const ScopedConfigHome home;
    home.writeSettings ("<PresetSettings storing=\"automatic\"/>");
    auto plugin = instantiateHosted (GetParam());
    ASSERT_NE (plugin, nullptr) << GetParam().identifier;
    EXPECT_EQ (plugin->getName(), "Quorlane");
    juce::StringArray missing (quorlaneParameterNames, 20);

    for (auto* p : plugin->getParameters())
    {
        const auto name = p->getName (64);

        if (! missing.contains (name))
        {
            EXPECT_TRUE (name == "Bypass" || name.startsWith ("MIDI CC")) << name;
            continue;
        }

        missing.removeString (name);
        EXPECT_TRUE (p->isAutomatable()) << name;
        EXPECT_FALSE (p->getCurrentValueAsText().isEmpty()) << name;
    }

    EXPECT_TRUE (missing.isEmpty()) << missing.joinIntoString (", ");
    auto* lateSize = parameterNamed (*plugin, "Late Size");
    ASSERT_NE (lateSize, nullptr);

    std::unique_ptr<juce::AudioProcessorEditor> editor (plugin->createEditorIfNeeded());
    ASSERT_NE (editor, nullptr);
    EXPECT_EQ (std::pair (editor->getWidth(), editor->getHeight()), std::pair (633, 207));
    editor->addToDesktop (0);
    editor->setVisible (true);
    runMessageLoop (300);
    auto* window = editor->getPeer() != nullptr ? editor->getPeer()->getNativeHandle() : nullptr;
    ASSERT_NE (window, nullptr);

    juce::AudioBuffer<float> buffer (2, 256);
    juce::MidiBuffer midi;
    expectEditorFollowsAndStores (window, [&]
    {
        buffer.clear();
        plugin->processBlock (buffer, midi);
    },
    [&] { lateSize->setValue (0.9f); }, [] { runMessageLoop (10); }, [&]
    {
        juce::MemoryBlock state;
        plugin->getStateInformation (state);
        const auto saved = pluginStateInside (state);
        return saved != nullptr ? saved->toString().toStdString() : std::string();
    });

    // A host scale of 2 (VST3 content scale, LV2 ui:scaleFactor) doubles the
    // plug-in's window: it keeps its logical size and the host's window grows.
    editor->setScaleFactor (2.0f);
    runMessageLoop (300);
    EXPECT_EQ (std::pair (editor->getWidth(), editor->getHeight()), std::pair (1266, 414));

    editor.reset();
    runMessageLoop();
}

#ifdef QUORLANE_LV2_DIR
// JUCE's LV2 host loads the system's folders before the build's, so a
// Quorlane installed there (by the .deb, `make install` or install.sh
// --system) would be tested in place of the one just built.
TEST (HostedLv2Build, IsNotShadowedByAnInstalledCopy)
{
    if (! environmentVariable ("QUORLANE_LV2_FOLDER").empty())
        GTEST_SKIP() << "testing an installed copy";

    for (const auto* folder : { "/usr/lib/lv2", "/usr/local/lib/lv2", "/usr/lib64/lv2", "/usr/local/lib64/lv2" })
        EXPECT_FALSE (juce::File (folder).getChildFile ("Quorlane.lv2").exists())
            << "Quorlane is installed in " << folder << "; remove it (apt-get remove quorlane, or sudo make uninstall) to test the build";
}
#endif

INSTANTIATE_TEST_SUITE_P (Formats, HostedPlugin, ::testing::ValuesIn (hostedFormats()),
    [] (const auto& info) { return info.param.name.toStdString(); });
