// Loads the CLAP build as a CLAP host does: dlopen or LoadLibrary, clap_entry,
// the plug-in factory and its extensions. Instances are made and activated on
// the test's main thread and processed on a thread of their own, as a host's
// audio thread would.

#include "../support/HostileSamples.h"
#include "../support/ParameterNames.h"
#include "../support/Vst2Plugin.h"

#include <clap/entry.h>
#include <clap/ext/audio-ports.h>
#include <clap/ext/latency.h>
#include <clap/ext/note-ports.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/plugin-factory.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace
{
    // What the plug-in asks of its host, counted.
    struct Host
    {
        Host()
        {
            host.host_data = this;
            host.get_extension = [] (const clap_host_t* h, const char* id) -> const void*
            {
                return std::strcmp (id, CLAP_EXT_PARAMS) == 0 ? &static_cast<Host*> (h->host_data)->params : nullptr;
            };
            host.request_restart = host.request_process = host.request_callback = [] (const clap_host_t*) {};
            params.rescan = [] (const clap_host_t* h, clap_param_rescan_flags) { ++static_cast<Host*> (h->host_data)->rescans; };
            params.clear = [] (const clap_host_t*, clap_id, clap_param_clear_flags) {};
            params.request_flush = [] (const clap_host_t* h) { ++static_cast<Host*> (h->host_data)->flushRequests; };
        }

        clap_host_t host { CLAP_VERSION_INIT, nullptr, "Quorlane tests", "Orlo", "", "1", nullptr, nullptr, nullptr, nullptr };
        clap_host_params_t params {};
        std::atomic<int> rescans { 0 }, flushRequests { 0 };
    };

    // Events handed to the plug-in, in time order.
    struct InputEvents
    {
        void add (uint32_t time, clap_id param, double value)
        {
            values.push_back ({ { sizeof (clap_event_param_value_t), time, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0 },
                                param, nullptr, -1, -1, -1, -1, value });
            order.push_back (&values.back().header);
        }

        void addMidi (uint32_t time, uint8_t status, uint8_t data1, uint8_t data2)
        {
            midi.push_back ({ { sizeof (clap_event_midi_t), time, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_MIDI, 0 }, 0, { status, data1, data2 } });
            order.push_back (&midi.back().header);
        }

        clap_input_events_t list { this,
            [] (const clap_input_events_t* l) { return (uint32_t) static_cast<InputEvents*> (l->ctx)->order.size(); },
            [] (const clap_input_events_t* l, uint32_t i) { return static_cast<InputEvents*> (l->ctx)->order[i]; } };

        // Reserved, so that the headers listed never move.
        InputEvents() { values.reserve (64); midi.reserve (64); }

        std::vector<clap_event_param_value_t> values;
        std::vector<clap_event_midi_t> midi;
        std::vector<const clap_event_header_t*> order;
    };

    // The parameter events the plug-in sends back.
    struct OutputEvents
    {
        struct Event
        {
            uint16_t type;
            uint32_t flags;
            clap_id param;
            double value;
        };

        clap_output_events_t list { this, [] (const clap_output_events_t* l, const clap_event_header_t* e)
        {
            const auto param = e->type == CLAP_EVENT_PARAM_VALUE ? reinterpret_cast<const clap_event_param_value_t*> (e)->param_id
                                                                 : reinterpret_cast<const clap_event_param_gesture_t*> (e)->param_id;
            const auto value = e->type == CLAP_EVENT_PARAM_VALUE ? reinterpret_cast<const clap_event_param_value_t*> (e)->value : 0.0;
            static_cast<OutputEvents*> (l->ctx)->events.push_back ({ e->type, e->flags, param, value });
            return true;
        } };

        std::vector<Event> events;
    };

    // A stream that moves at most `step` bytes a call, as a host may.
    struct Stream
    {
        explicit Stream (size_t maximumStep) : step (maximumStep) {}

        clap_ostream_t out { this, [] (const clap_ostream_t* s, const void* buffer, uint64_t size) -> int64_t
        {
            auto& self = *static_cast<Stream*> (s->ctx);
            const auto n = std::min<size_t> ((size_t) size, self.step);
            self.bytes.append (static_cast<const char*> (buffer), n);
            return (int64_t) n;
        } };

        clap_istream_t in { this, [] (const clap_istream_t* s, void* buffer, uint64_t size) -> int64_t
        {
            auto& self = *static_cast<Stream*> (s->ctx);
            const auto n = std::min ({ (size_t) size, self.step, self.bytes.size() - self.readPosition });
            std::memcpy (buffer, self.bytes.data() + self.readPosition, n);
            self.readPosition += n;
            return (int64_t) n;
        } };

        const size_t step;
        std::string bytes;
        size_t readPosition = 0;
    };

    const clap_plugin_entry_t* entry()
    {
        static const SharedLibrary library { QUORLANE_CLAP_PATH };
        static const auto* found = [] () -> const clap_plugin_entry_t*
        {
            const auto* e = static_cast<const clap_plugin_entry_t*> (library.symbol ("clap_entry"));
            return e != nullptr && e->init (QUORLANE_CLAP_PATH) ? e : nullptr;
        }();
        return found;
    }

    const clap_plugin_factory_t* factory()
    {
        return entry() != nullptr ? static_cast<const clap_plugin_factory_t*> (entry()->get_factory (CLAP_PLUGIN_FACTORY_ID)) : nullptr;
    }

    // An initialised instance, activated for 48 kHz; its audio runs on a thread of its own.
    struct Instance
    {
        Instance()
        {
            plugin = factory()->create_plugin (factory(), &host.host, "orlo.quorlane");

            if (plugin == nullptr || ! plugin->init (plugin))
                return;

            params = static_cast<const clap_plugin_params_t*> (plugin->get_extension (plugin, CLAP_EXT_PARAMS));
            state = static_cast<const clap_plugin_state_t*> (plugin->get_extension (plugin, CLAP_EXT_STATE));
            active = plugin->activate (plugin, 48000.0, 1, 512);
        }

        ~Instance()
        {
            if (active)
                plugin->deactivate (plugin);

            if (plugin != nullptr)
                plugin->destroy (plugin);
        }

        // In place, on the audio thread.
        void process (std::vector<float>& left, std::vector<float>& right, InputEvents& in, OutputEvents& out)
        {
            std::thread audio ([&]
            {
                float* channels[] = { left.data(), right.data() };
                clap_audio_buffer_t input { channels, nullptr, 2, 0, 0 }, output { channels, nullptr, 2, 0, 0 };
                const clap_process_t process { -1, (uint32_t) left.size(), nullptr, &input, &output, 1, 1, &in.list, &out.list };
                plugin->start_processing (plugin);
                status = plugin->process (plugin, &process);
                plugin->stop_processing (plugin);
            });
            audio.join();
        }

        double value (clap_id id) const
        {
            double v = -1.0;
            params->get_value (plugin, id, &v);
            return v;
        }

        std::string text (clap_id id, double v) const
        {
            char display[256];
            std::memset (display, 'X', sizeof (display));
            return params->value_to_text (plugin, id, v, display, sizeof (display)) ? display : "(refused)";
        }

        std::string savedState() const
        {
            Stream stream (7);
            return state->save (plugin, &stream.out) ? stream.bytes : std::string();
        }

        bool loadState (const std::string& bytes) const
        {
            Stream stream (5);
            stream.bytes = bytes;
            return state->load (plugin, &stream.in);
        }

        Host host;
        const clap_plugin_t* plugin = nullptr;
        const clap_plugin_params_t* params = nullptr;
        const clap_plugin_state_t* state = nullptr;
        bool active = false;
        clap_process_status status = CLAP_PROCESS_ERROR;
    };

    std::vector<float> sine (size_t length, float frequency)
    {
        std::vector<float> samples (length);

        for (size_t i = 0; i < length; ++i)
            samples[i] = 0.25f * std::sin ((float) i * frequency);

        return samples;
    }

    constexpr clap_id outputVolume = 19, fx = 18;
}

class ClapHost : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_NE (factory(), nullptr) << SharedLibrary (QUORLANE_CLAP_PATH).error();
        ASSERT_TRUE (instance.active);
        ASSERT_NE (instance.params, nullptr);
        ASSERT_NE (instance.state, nullptr);
    }

    Instance instance;
};

// What a host reads while it scans the module and loads the plug-in: one
// descriptor, stereo ports, one MIDI input, the latency, and parameters that
// read exactly as the VST2 build's.
TEST_F (ClapHost, DescribesItselfAndItsParametersAsTheVst2BuildDoes)
{
    EXPECT_EQ (SharedLibrary (QUORLANE_CLAP_PATH).symbol ("createPluginFilter"), nullptr) << "clap_entry is the only export";
    ASSERT_EQ (factory()->get_plugin_count (factory()), 1u);
    const auto* descriptor = factory()->get_plugin_descriptor (factory(), 0);
    EXPECT_STREQ (descriptor->id, "orlo.quorlane");
    EXPECT_STREQ (descriptor->name, "Quorlane");
    EXPECT_STREQ (descriptor->vendor, "Orlo Digital Audio Works");
    EXPECT_STREQ (descriptor->version, "1.3.1");
    std::vector<std::string> features;
    for (auto* f = descriptor->features; *f != nullptr; ++f)
        features.emplace_back (*f);
    EXPECT_EQ (features, (std::vector<std::string> { "audio-effect", "reverb", "stereo" }));
    EXPECT_EQ (factory()->create_plugin (factory(), &instance.host.host, "orlo.other"), nullptr);

    const auto* plugin = instance.plugin;
    const auto* ports = static_cast<const clap_plugin_audio_ports_t*> (plugin->get_extension (plugin, CLAP_EXT_AUDIO_PORTS));
    ASSERT_NE (ports, nullptr);
    for (bool isInput : { true, false })
    {
        clap_audio_port_info_t info {};
        ASSERT_EQ (ports->count (plugin, isInput), 1u);
        ASSERT_TRUE (ports->get (plugin, 0, isInput, &info));
        EXPECT_EQ (info.channel_count, 2u);
        EXPECT_STREQ (info.port_type, CLAP_PORT_STEREO);
        EXPECT_NE (info.flags & CLAP_AUDIO_PORT_IS_MAIN, 0u);
    }

    const auto* notes = static_cast<const clap_plugin_note_ports_t*> (plugin->get_extension (plugin, CLAP_EXT_NOTE_PORTS));
    ASSERT_NE (notes, nullptr);
    clap_note_port_info_t noteInfo {};
    EXPECT_EQ (notes->count (plugin, false), 0u);
    ASSERT_EQ (notes->count (plugin, true), 1u);
    ASSERT_TRUE (notes->get (plugin, 0, true, &noteInfo));
    EXPECT_EQ (noteInfo.supported_dialects, (uint32_t) CLAP_NOTE_DIALECT_MIDI);

    const auto* latency = static_cast<const clap_plugin_latency_t*> (plugin->get_extension (plugin, CLAP_EXT_LATENCY));
    ASSERT_NE (latency, nullptr);
    EXPECT_EQ (latency->get (plugin), 32u);

    // Prepared for the same rate, which the Late Bass Cut text follows.
    Vst2::Plugin vst2 (QUORLANE_VST2_PATH);
    ASSERT_NE (vst2.effect, nullptr);
    vst2.start (512);
    ASSERT_EQ (instance.params->count (plugin), 20u);

    for (clap_id i = 0; i < 20; ++i)
    {
        clap_param_info_t info {};
        ASSERT_TRUE (instance.params->get_info (plugin, i, &info));
        EXPECT_EQ (info.id, i);
        EXPECT_STREQ (info.name, quorlaneParameterNames[i]);
        EXPECT_EQ (info.name, vst2.text (Vst2::effGetParamName, (int32_t) i));
        EXPECT_NE (info.flags & CLAP_PARAM_IS_AUTOMATABLE, 0u);
        EXPECT_EQ (info.min_value, 0.0);
        EXPECT_EQ (info.max_value, 1.0);
        EXPECT_FLOAT_EQ ((float) instance.value (i), vst2.get ((int32_t) i)) << "both start from the same preset";

        // Both set to the value first: some texts read the running engine.
        for (float v : { 0.0f, 0.3f, 0.77f, 1.0f })
        {
            vst2.set ((int32_t) i, v);
            InputEvents change;
            change.add (0, i, v);
            OutputEvents none;
            instance.params->flush (plugin, &change.list, &none.list);
            const auto text = instance.text (i, v);
            EXPECT_EQ (text, vst2.text (Vst2::effGetParamDisplay, (int32_t) i)) << quorlaneParameterNames[i] << " at " << v;

            double back = -1.0;
            ASSERT_TRUE (instance.params->text_to_value (plugin, i, text.c_str(), &back));
            EXPECT_EQ (instance.text (i, back), text) << "the text reads back as the value it shows";
        }
    }

    vst2.stop();
    clap_param_info_t info {};
    EXPECT_FALSE (instance.params->get_info (plugin, 20, &info));
    EXPECT_EQ (instance.text (20, 0.5), "(refused)");
}

// The engine takes parameter changes between its 32-sample blocks and plays
// them 32 samples later. A change at sample 100 belongs to the block that
// starts at 96, so it is heard from sample 128 on: every sample before that
// is what an instance without the change plays.
TEST_F (ClapHost, ParameterChangeInsideTheBlockIsHeardFromTheNextBoundary)
{
    Instance reference;
    ASSERT_TRUE (reference.active);
    auto left = sine (512, 0.05f), right = sine (512, 0.07f);
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
// host as a change not to record. The VST2 build's chunk is the same state.
TEST_F (ClapHost, StateControllerMapAndFlushAcrossInstancesAndFormats)
{
    InputEvents changes;
    changes.add (0, 9, 0.125);
    changes.add (0, 16, 0.75);
    OutputEvents flushed;
    instance.params->flush (instance.plugin, &changes.list, &flushed.list);
    EXPECT_EQ (instance.value (9), 0.125);
    EXPECT_EQ (instance.value (16), 0.75);

    auto saved = instance.savedState();
    const auto map = std::string ("<MidiControlMap name=\"Quorlane\"/>");
    const auto at = saved.find (map);
    ASSERT_NE (at, std::string::npos);
    saved.replace (at, map.size(), "<MidiControlMap name=\"Quorlane\"><assign param=\"FX\" CC=\"74\"/></MidiControlMap>");
    // The chunk's header holds the document's length.
    const auto length = (uint32_t) (saved.size() - 9);
    std::memcpy (saved.data() + 4, &length, 4);

    Instance fresh;
    ASSERT_TRUE (fresh.active);
    EXPECT_NE (fresh.value (9), 0.125);
    ASSERT_TRUE (fresh.loadState (saved));
    EXPECT_EQ (fresh.value (9), 0.125);
    EXPECT_EQ (fresh.value (16), 0.75);
    EXPECT_TRUE (fresh.savedState() == saved) << "written back as it was read";
    EXPECT_EQ (fresh.host.rescans.load(), 1) << "the host rereads the values";

    std::vector<float> left (256), right (256);
    InputEvents controller;
    controller.addMidi (10, 0xB0, 74, 127);
    OutputEvents reported;
    fresh.process (left, right, controller, reported);
    EXPECT_EQ (fresh.value (fx), 1.0);
    ASSERT_EQ (reported.events.size(), 1u);
    EXPECT_EQ (reported.events[0].type, CLAP_EVENT_PARAM_VALUE);
    EXPECT_EQ (reported.events[0].param, fx);
    EXPECT_EQ (reported.events[0].value, 1.0);
    EXPECT_NE (reported.events[0].flags & CLAP_EVENT_DONT_RECORD, 0u);
    EXPECT_EQ (fresh.host.flushRequests.load(), 0) << "nothing asked for a flush from the audio thread";

    Vst2::Plugin vst2 (QUORLANE_VST2_PATH);
    ASSERT_NE (vst2.effect, nullptr);
    vst2.setChunk (fresh.savedState());
    EXPECT_FLOAT_EQ (vst2.get (9), 0.125f);
    EXPECT_FLOAT_EQ (vst2.get ((int32_t) fx), 1.0f);
    EXPECT_NE (vst2.chunk().find ("<assign param=\"FX\" CC=\"74\"/>"), std::string::npos);
}

// NaN, infinities and huge values from upstream never reach the output,
// and the reverb goes on sounding.
TEST_F (ClapHost, OutputStaysFiniteThroughNonFiniteInput)
{
    float lastLevel = 0.0f;

    for (int block = 0; block < 60; ++block)
    {
        auto left = sine (256, 0.03f), right = sine (256, 0.05f);

        for (size_t i = 3; block < 30 && i < left.size(); i += 64)
            (i % 128 == 3 ? left : right)[i] = hostileSamples[(size_t) block % std::size (hostileSamples)];

        InputEvents none;
        OutputEvents out;
        instance.process (left, right, none, out);
        lastLevel = 0.0f;

        for (size_t i = 0; i < left.size(); ++i)
        {
            ASSERT_TRUE (std::isfinite (left[i]) && std::isfinite (right[i])) << "block " << block << " sample " << i;
            lastLevel = std::max ({ lastLevel, std::abs (left[i]), std::abs (right[i]) });
        }
    }

    EXPECT_GT (lastLevel, 0.01f);
}
