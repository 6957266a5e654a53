// Loads the CLAP build as a CLAP host does: dlopen or LoadLibrary, clap_entry,
// the plug-in factory and its extensions. Instances are made and activated on
// the test's main thread and processed on a thread of their own, as a host's
// audio thread would. What every format shares (the state in a DAW) is
// checked in Ardour; here, what the CLAP build does its own way.

#include "../support/ClapPlugin.h"
#include "../support/EditorFollowWatch.h"
#include "../support/Environment.h"
#include "../support/HostProcess.h"
#include "../support/NativeParentWindow.h"
#include "../support/ParameterNames.h"
#include "../support/ScopedSettingsFile.h"
#include "../support/Vst2Plugin.h"

#include <clap/ext/audio-ports.h>
#include <clap/ext/latency.h>
#include <clap/ext/note-ports.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstring>
#include <set>
#include <thread>

namespace
{
    using namespace Clap;

    const char* clapPath()
    {
        static const auto path = pluginLocation ("QUORLANE_CLAP_PLUGIN", QUORLANE_CLAP_PATH);
        return path.c_str();
    }

    const clap_plugin_factory_t* factory() { return Clap::factory (clapPath()); }

    [[maybe_unused]] auto* const hostProcess = ::testing::AddGlobalTestEnvironment (new HostProcess);

    std::string displayText (const Instance& instance, clap_id id, double v)
    {
        char display[256];
        std::memset (display, 'X', sizeof (display));
        return instance.params->value_to_text (instance.plugin, id, v, display, sizeof (display)) ? display : "(refused)";
    }

    constexpr clap_id outputVolume = 19, fx = 18, lateSize = 6;

   #if defined(_WIN32)
    const char* const editorWindowApi = CLAP_WINDOW_API_WIN32;
   #else
    const char* const editorWindowApi = CLAP_WINDOW_API_X11;
   #endif
}

class ClapHost : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_NE (factory(), nullptr) << SharedLibrary (clapPath()).error();
        ASSERT_TRUE (instance.active && instance.params != nullptr && instance.state != nullptr);
    }

    Instance instance { clapPath() };
};

// What a host reads while it scans the module and loads the plug-in: one
// descriptor, stereo ports, one MIDI input, the latency, and parameters that
// read exactly as the VST2 build's.
TEST_F (ClapHost, DescribesItselfAndItsParametersAsTheVst2BuildDoes)
{
    EXPECT_EQ (SharedLibrary (clapPath()).symbol ("createPluginFilter"), nullptr) << "clap_entry is the only export";
    ASSERT_EQ (factory()->get_plugin_count (factory()), 1u);
    const auto* descriptor = factory()->get_plugin_descriptor (factory(), 0);
    EXPECT_STREQ (descriptor->id, "orlo.quorlane");
    EXPECT_STREQ (descriptor->name, "Quorlane");
    std::string features; // what hosts file it under

    for (auto* f = descriptor->features; *f != nullptr; ++f)
        features += std::string (*f) + " ";

    EXPECT_EQ (features, "audio-effect reverb stereo ");
    EXPECT_EQ (factory()->create_plugin (factory(), &instance.host.host, "orlo.other"), nullptr);

    // Stereo in and out on the main ports, and MIDI in on one note port.
    const auto* plugin = instance.plugin;
    const auto* ports = instance.extension<clap_plugin_audio_ports_t> (CLAP_EXT_AUDIO_PORTS);
    const auto* notes = instance.extension<clap_plugin_note_ports_t> (CLAP_EXT_NOTE_PORTS);
    ASSERT_TRUE (ports != nullptr && notes != nullptr);

    for (bool isInput : { true, false })
    {
        clap_audio_port_info_t info {};
        ASSERT_EQ (ports->count (plugin, isInput), 1u);
        ASSERT_TRUE (ports->get (plugin, 0, isInput, &info));
        EXPECT_EQ (info.channel_count, 2u);
        EXPECT_STREQ (info.port_type, CLAP_PORT_STEREO);
        EXPECT_NE (info.flags & CLAP_AUDIO_PORT_IS_MAIN, 0u);
        clap_note_port_info_t noteInfo {};
        EXPECT_EQ (notes->count (plugin, isInput), isInput ? 1u : 0u);
        EXPECT_EQ (notes->get (plugin, 0, isInput, &noteInfo) && noteInfo.supported_dialects == CLAP_NOTE_DIALECT_MIDI, isInput);
    }

    EXPECT_EQ (instance.extension<clap_plugin_latency_t> (CLAP_EXT_LATENCY)->get (plugin), 32u);

    // Prepared for the same rate, which the Late Bass Cut text follows.
    Vst2::Plugin vst2 (QUORLANE_VST2_PATH);
    ASSERT_NE (vst2.effect, nullptr);
    vst2.start (512);
    EXPECT_EQ (descriptor->vendor, vst2.text (Vst2::effGetVendorString));
    ASSERT_EQ (instance.params->count (plugin), 20u);

    clap_param_info_t info {};
    EXPECT_FALSE (instance.params->get_info (plugin, 20, &info));
    EXPECT_EQ (displayText (instance, 20, 0.5), "(refused)");

    for (clap_id i = 0; i < 20; ++i)
    {
        ASSERT_TRUE (instance.params->get_info (plugin, i, &info));
        EXPECT_EQ (info.id, i);
        EXPECT_STREQ (info.name, quorlaneParameterNames[i]);
        EXPECT_EQ (info.name, vst2.text (Vst2::effGetParamName, (int32_t) i));
        EXPECT_TRUE ((info.flags & CLAP_PARAM_IS_AUTOMATABLE) != 0 && info.min_value == 0.0 && info.max_value == 1.0) << info.name;
        EXPECT_FLOAT_EQ ((float) instance.value (i), vst2.get ((int32_t) i)) << "both start from the same preset";

        // Both set to the value first: some texts read the running engine.
        for (float v : { 0.0f, 0.3f, 0.77f, 1.0f })
        {
            vst2.set ((int32_t) i, v);
            InputEvents change;
            change.add (0, i, v);
            OutputEvents none;
            instance.params->flush (plugin, &change.list, &none.list);
            const auto text = displayText (instance, i, v);
            EXPECT_EQ (text, vst2.text (Vst2::effGetParamDisplay, (int32_t) i)) << quorlaneParameterNames[i] << " at " << v;

            double back = -1.0;
            ASSERT_TRUE (instance.params->text_to_value (plugin, i, text.c_str(), &back));
            EXPECT_EQ (displayText (instance, i, back), text) << "the text reads back as the value it shows";
        }
    }

    vst2.stop();
}

// The engine takes parameter changes between its 32-sample blocks and plays
// them 32 samples later: a change at sample 100 is heard from sample 128 on.
TEST_F (ClapHost, ParameterChangeInsideTheBlockIsHeardFromTheNextBoundary)
{
    Instance reference { clapPath() };
    ASSERT_TRUE (reference.active);
    std::vector<float> left (512), right (512);

    for (size_t i = 0; i < left.size(); ++i)
        left[i] = 0.25f * std::sin ((float) i * 0.05f), right[i] = 0.25f * std::sin ((float) i * 0.07f);

    auto referenceLeft = left, referenceRight = right;
    InputEvents change, none;
    change.add (100, outputVolume, 0.0);
    OutputEvents out, referenceOut;
    instance.process (left, right, change, out);
    reference.process (referenceLeft, referenceRight, none, referenceOut);
    ASSERT_EQ (instance.status, CLAP_PROCESS_CONTINUE);

    for (size_t i = 0; i < 128; ++i)
        ASSERT_EQ (left[i], referenceLeft[i]) << "sample " << i << " already changed";

    double difference = 0.0;
    for (size_t i = 128; i < 160; ++i)
        difference += std::abs (left[i] - referenceLeft[i]) + std::abs (right[i] - referenceRight[i]);

    EXPECT_GT (difference, 1e-3) << "the change is heard from the boundary on";
    EXPECT_EQ (instance.value (outputVolume), 0.0);
    EXPECT_TRUE (out.events.empty()) << "the host's own change is not echoed";
}

// A state saved and restored through streams that move a few bytes a call:
// values set through a flush (no processing), and a controller mapping that
// then moves its parameter from a MIDI event in a block, reported back to the
// host as a change not to record. The VST2 build reads the same state.
TEST_F (ClapHost, StateControllerMapAndFlushAcrossInstancesAndFormats)
{
    InputEvents changes;
    OutputEvents flushed;
    changes.add (0, 9, 0.125);
    changes.add (0, 16, 0.75);
    instance.params->flush (instance.plugin, &changes.list, &flushed.list);
    const auto saved = withControllerMap (instance.savedState(), "<assign param=\"FX\" CC=\"74\"/>");
    ASSERT_FALSE (saved.empty());

    Instance fresh { clapPath() };
    ASSERT_TRUE (fresh.active);
    EXPECT_NE (fresh.value (9), 0.125);
    ASSERT_TRUE (fresh.loadState (saved));
    EXPECT_EQ (std::pair (fresh.value (9), fresh.value (16)), std::pair (0.125, 0.75));
    EXPECT_TRUE (fresh.savedState() == saved) << "written back as it was read";
    EXPECT_EQ (fresh.host.rescans.load(), 1) << "the host rereads the values";

    std::vector<float> left (256), right (256);
    InputEvents controller;
    OutputEvents reported;
    controller.addMidi (10, 0xB0, 74, 127);
    fresh.process (left, right, controller, reported);
    EXPECT_EQ (fresh.value (fx), 1.0);
    ASSERT_EQ (reported.events.size(), 1u);
    const auto& report = reported.events[0];
    EXPECT_EQ (std::tuple (report.type, report.param, report.value), std::tuple ((uint16_t) CLAP_EVENT_PARAM_VALUE, fx, 1.0));
    EXPECT_NE (report.flags & CLAP_EVENT_DONT_RECORD, 0u);
    EXPECT_EQ (fresh.host.flushRequests.load(), 0) << "nothing asked for a flush from the audio thread";

    Vst2::Plugin vst2 (QUORLANE_VST2_PATH);
    ASSERT_NE (vst2.effect, nullptr);
    vst2.setChunk (fresh.savedState());
    EXPECT_EQ (std::pair (vst2.get (9), vst2.get ((int32_t) fx)), std::pair (0.125f, 1.0f));
    EXPECT_NE (vst2.chunk().find ("<assign param=\"FX\" CC=\"74\"/>"), std::string::npos);
}

// As a CLAP host with timers runs the plug-in: the editor made, embedded in a
// window of the host's at the skin's size and drawn; automation of "Late
// Size" played on an audio thread in real time is shown within 100 ms and,
// with automatic storing on, stored into the current preset, while JUCE's
// message loop runs only from the host's timer calls on its main thread. At
// a host scale of 2 the editor is twice the size, and the host is asked for it.
TEST (ClapHosting, EditorInTheHostsWindowFollowsAutomationOnTheHostsTimer)
{
    const ScopedSettingsFile settings (HostProcess::settingsFolder(),
                                       "<UserSettings application=\"Quorlane\"><PresetSettings storing=\"automatic\"/></UserSettings>");
    uint32_t width = 0, height = 0;

    // Without the host's timers the loop has a thread of its own, which
    // runs the host's gui calls.
    {
        Instance withoutTimers { clapPath() };
        const auto* gui = withoutTimers.active ? withoutTimers.extension<clap_plugin_gui_t> (CLAP_EXT_GUI) : nullptr;
        ASSERT_NE (gui, nullptr);
        ASSERT_TRUE (gui->create (withoutTimers.plugin, editorWindowApi, false) && gui->set_scale (withoutTimers.plugin, 2.0)
                     && gui->get_size (withoutTimers.plugin, &width, &height));
        EXPECT_EQ (std::pair (width, height), std::pair (1266u, 414u));
        gui->destroy (withoutTimers.plugin);
    }

    Instance instance { clapPath(), true };
    ASSERT_TRUE (instance.active);
    const auto* plugin = instance.plugin;
   #if defined(__linux__)
    EXPECT_GT (instance.host.timerPeriod, 0u);
    ASSERT_NE (instance.host.timerId, CLAP_INVALID_ID) << "the plug-in asks for the host's timer";
   #endif

    const auto* gui = instance.extension<clap_plugin_gui_t> (CLAP_EXT_GUI);
    const auto* timers = instance.extension<clap_plugin_timer_support_t> (CLAP_EXT_TIMER_SUPPORT);
    ASSERT_TRUE (gui != nullptr && timers != nullptr);

    const char* api = nullptr;
    bool isFloating = true;
    ASSERT_TRUE (gui->get_preferred_api (plugin, &api, &isFloating));
    EXPECT_STREQ (api, editorWindowApi);
    EXPECT_FALSE (isFloating);
    EXPECT_FALSE (gui->is_api_supported (plugin, api, true)) << "never floating";
    EXPECT_FALSE (gui->is_api_supported (plugin, CLAP_WINDOW_API_COCOA, false));

    NativeParentWindow parent;
    ASSERT_NE (parent.handle(), nullptr) << "no window system";
    ASSERT_TRUE (gui->create (plugin, api, false));
    ASSERT_TRUE (gui->get_size (plugin, &width, &height));
    EXPECT_EQ (std::pair (width, height), std::pair (633u, 207u));
    EXPECT_FALSE (gui->can_resize (plugin));
    EXPECT_FALSE (gui->set_size (plugin, 700, 300)) << "one size per scale and zoom";

    const clap_window_t window { api, { parent.handle() } };
    ASSERT_TRUE (gui->set_parent (plugin, &window));
    ASSERT_TRUE (gui->show (plugin));

    // The host's event loop every 10 ms, with or without its timer calls, on
    // the test's (the host's main) thread.
    const auto idle = [&] (bool withTimers = true)
    {
        parent.dispatchEvents();

        if (withTimers && instance.host.timerId != CLAP_INVALID_ID)
            timers->on_timer (plugin, instance.host.timerId);

        std::this_thread::sleep_for (std::chrono::milliseconds (10));
    };
    const auto idleFor = [&] (int calls, bool withTimers = true) { while (calls-- > 0) idle (withTimers); };

    idleFor (30);
    const auto drawn = windowPixels (parent.handle(), 0, 0, (int) width, (int) height);
    EXPECT_GT (std::set<uint32_t> (drawn.begin(), drawn.end()).size(), 50u) << "the skin is drawn in the host's window";

    // The automation event is added on the audio thread, for the next block.
    std::vector<float> left (256), right (256);
    InputEvents in;
    OutputEvents out;
    plugin->start_processing (plugin);
    expectEditorFollowsAndStores (parent.handle(), [&]
    {
        std::fill (left.begin(), left.end(), 0.0f);
        std::fill (right.begin(), right.end(), 0.0f);
        instance.processHere (left.data(), right.data(), 256, in, out);
        in.clear();
        out.events.clear();
    },
    [&] { in.add (17, lateSize, 0.9); }, [&] { idle(); }, [&] { return instance.savedState(); });
    plugin->stop_processing (plugin);

    // On Linux the host's timer calls run the plug-in's loop: without them the
    // editor stands still, and they bring it up to date. (On Windows the
    // host's own event loop runs it.)
    const auto knobBefore = windowPixels (parent.handle(), 171, 59, 35, 35);
    in.clear();
    in.add (0, lateSize, 0.1);
    instance.process (left, right, in, out);
   #if ! defined(_WIN32)
    idleFor (30, false);
    EXPECT_EQ (pixelsChanged (knobBefore, windowPixels (parent.handle(), 171, 59, 35, 35)), 0);
   #endif
    idleFor (30);
    EXPECT_GT (pixelsChanged (knobBefore, windowPixels (parent.handle(), 171, 59, 35, 35)), 20);

    EXPECT_TRUE (gui->set_scale (plugin, 2.0));
    ASSERT_TRUE (gui->get_size (plugin, &width, &height));
    EXPECT_EQ (std::pair (width, height), std::pair (1266u, 414u));
    EXPECT_GE (instance.host.resizeRequests.load(), 1);
    EXPECT_EQ (std::pair (instance.host.requestedWidth, instance.host.requestedHeight), std::pair (1266u, 414u));
    EXPECT_FALSE (gui->set_scale (plugin, 0.0));
    gui->destroy (plugin);
}
