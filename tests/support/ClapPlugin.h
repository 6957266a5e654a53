#pragma once

#include "SharedLibrary.h"

#include <clap/entry.h>
#include <clap/ext/gui.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>
#include <clap/plugin-factory.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// The CLAP build as a host loads it: the library, clap_entry and the plug-in
// factory, a host that counts what the plug-in asks of it, and the event
// lists and streams a host hands over. Nothing here allocates once made, so
// that a watched audio thread may use it.
namespace Clap
{
    inline const clap_plugin_factory_t* factory (const char* path)
    {
        static const SharedLibrary library { path };
        static const auto* entry = static_cast<const clap_plugin_entry_t*> (library.symbol ("clap_entry"));
        static const bool initialised = entry != nullptr && entry->init (path);
        return initialised ? static_cast<const clap_plugin_factory_t*> (entry->get_factory (CLAP_PLUGIN_FACTORY_ID)) : nullptr;
    }

    // What the plug-in asks of its host, counted. The GUI extensions (timer
    // support, resize requests) are offered only when asked for; the host's
    // timers then run when the test calls on_timer on its main thread.
    struct Host
    {
        static Host& from (const clap_host_t* h) { return *static_cast<Host*> (h->host_data); }

        const bool gui = false;
        std::atomic<int> rescans { 0 }, flushRequests { 0 }, resizeRequests { 0 };
        uint32_t timerPeriod = 0, requestedWidth = 0, requestedHeight = 0;
        clap_id timerId = CLAP_INVALID_ID;

        clap_host_params_t params { [] (const clap_host_t* h, clap_param_rescan_flags) { ++from (h).rescans; },
                                    [] (const clap_host_t*, clap_id, clap_param_clear_flags) {},
                                    [] (const clap_host_t* h) { ++from (h).flushRequests; } };
        clap_host_timer_support_t timers {
            [] (const clap_host_t* h, uint32_t period, clap_id* id)
            {
                from (h).timerPeriod = period;
                *id = from (h).timerId = 7;
                return period > 0;
            },
            [] (const clap_host_t* h, clap_id id) { return std::exchange (from (h).timerId, CLAP_INVALID_ID) == id; } };
        clap_host_gui_t hostGui { [] (const clap_host_t*) {},
            [] (const clap_host_t* h, uint32_t width, uint32_t height)
            {
                from (h).requestedWidth = width;
                from (h).requestedHeight = height;
                return ++from (h).resizeRequests > 0;
            },
            [] (const clap_host_t*) { return false; }, [] (const clap_host_t*) { return false; }, [] (const clap_host_t*, bool) {} };
        clap_host_t host { CLAP_VERSION_INIT, this, "Quorlane tests", "Orlo", "", "1", [] (const clap_host_t* h, const char* id) -> const void*
            {
                auto& self = from (h);
                return std::strcmp (id, CLAP_EXT_PARAMS) == 0                   ? (const void*) &self.params
                     : self.gui && std::strcmp (id, CLAP_EXT_TIMER_SUPPORT) == 0 ? (const void*) &self.timers
                     : self.gui && std::strcmp (id, CLAP_EXT_GUI) == 0           ? (const void*) &self.hostGui
                                                                                  : nullptr;
            },
            [] (const clap_host_t*) {}, [] (const clap_host_t*) {}, [] (const clap_host_t*) {} };
    };

    // Events handed to the plug-in, in the order added; what does not fit is left out.
    struct InputEvents
    {
        union Event { clap_event_header_t header; clap_event_param_value_t value; clap_event_midi_t midi; };

        InputEvents() { events.reserve (128); }

        void add (uint32_t time, clap_id param, double value)
        {
            if (events.size() < events.capacity())
                events.push_back ({ .value = { { sizeof (clap_event_param_value_t), time, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_PARAM_VALUE, 0 },
                                               param, nullptr, -1, -1, -1, -1, value } });
        }

        void addMidi (uint32_t time, uint8_t status, uint8_t data1, uint8_t data2)
        {
            if (events.size() < events.capacity())
                events.push_back ({ .midi = { { sizeof (clap_event_midi_t), time, CLAP_CORE_EVENT_SPACE_ID, CLAP_EVENT_MIDI, 0 }, 0, { status, data1, data2 } } });
        }

        void clear() { events.clear(); }

        clap_input_events_t list { this,
            [] (const clap_input_events_t* l) { return (uint32_t) static_cast<InputEvents*> (l->ctx)->events.size(); },
            [] (const clap_input_events_t* l, uint32_t i) -> const clap_event_header_t* { return &static_cast<InputEvents*> (l->ctx)->events[i].header; } };

        std::vector<Event> events;
    };

    // The parameter events the plug-in sends back, up to a fixed number.
    struct OutputEvents
    {
        struct Event { uint16_t type; uint32_t flags; clap_id param; double value; };

        OutputEvents() { events.reserve (256); }

        clap_output_events_t list { this, [] (const clap_output_events_t* l, const clap_event_header_t* e)
        {
            auto& events = static_cast<OutputEvents*> (l->ctx)->events;

            if (events.size() == events.capacity())
                return false;

            // Value and gesture events both start with the parameter's id.
            const auto* value = reinterpret_cast<const clap_event_param_value_t*> (e);
            events.push_back ({ e->type, e->flags, value->param_id, e->type == CLAP_EVENT_PARAM_VALUE ? value->value : 0.0 });
            return true;
        } };

        std::vector<Event> events;
    };

    // A stream that moves at most `step` bytes a call, as a host may.
    struct Stream
    {
        const size_t step;
        std::string bytes {};
        size_t readPosition = 0;

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
    };

    // A saved state whose empty controller map is replaced by `assignments`
    // (<assign .../> elements); empty when the state has no empty map.
    inline std::string withControllerMap (std::string state, const std::string& assignments)
    {
        const std::string empty = "<MidiControlMap name=\"Quorlane\"/>";
        const auto at = state.find (empty);

        if (at == std::string::npos || state.size() < 9)
            return {};

        state.replace (at, empty.size(), "<MidiControlMap name=\"Quorlane\">" + assignments + "</MidiControlMap>");
        // The chunk's header holds the document's length.
        const auto length = (uint32_t) (state.size() - 9);
        std::memcpy (state.data() + 4, &length, 4);
        return state;
    }

    // An initialised instance made on the calling thread (the host's main
    // thread), activated for 48 kHz and blocks of up to 1024; its host's
    // counters make it impossible to copy.
    struct Instance
    {
        Instance (const char* path, bool offersGui = false) : host { offersGui }
        {
            const auto* f = factory (path);
            plugin = f != nullptr ? f->create_plugin (f, &host.host, "orlo.quorlane") : nullptr;

            if (plugin == nullptr || ! plugin->init (plugin))
                return;

            params = extension<clap_plugin_params_t> (CLAP_EXT_PARAMS);
            state = extension<clap_plugin_state_t> (CLAP_EXT_STATE);
            active = plugin->activate (plugin, 48000.0, 1, 1024);
        }

        ~Instance()
        {
            if (active)
                plugin->deactivate (plugin);

            if (plugin != nullptr)
                plugin->destroy (plugin);
        }

        template <typename Extension>
        const Extension* extension (const char* id) const { return static_cast<const Extension*> (plugin->get_extension (plugin, id)); }

        // One block in place, on the calling thread.
        clap_process_status processHere (float* left, float* right, uint32_t frames, InputEvents& in, OutputEvents& out)
        {
            float* channels[] = { left, right };
            clap_audio_buffer_t input { channels, nullptr, 2, 0, 0 }, output { channels, nullptr, 2, 0, 0 };
            const clap_process_t process { -1, frames, nullptr, &input, &output, 1, 1, &in.list, &out.list };
            return plugin->process (plugin, &process);
        }

        // One block in place, on an audio thread of its own.
        void process (std::vector<float>& left, std::vector<float>& right, InputEvents& in, OutputEvents& out)
        {
            std::thread ([&]
            {
                plugin->start_processing (plugin);
                status = processHere (left.data(), right.data(), (uint32_t) left.size(), in, out);
                plugin->stop_processing (plugin);
            }).join();
        }

        double value (clap_id id) const
        {
            double v = -1.0;
            params->get_value (plugin, id, &v);
            return v;
        }

        std::string savedState() const
        {
            Stream stream { 7 };
            return state->save (plugin, &stream.out) ? stream.bytes : std::string();
        }

        bool loadState (const std::string& bytes) const
        {
            Stream stream { 5, bytes };
            return state->load (plugin, &stream.in);
        }

        Host host;
        const clap_plugin_t* plugin = nullptr;
        const clap_plugin_params_t* params = nullptr;
        const clap_plugin_state_t* state = nullptr;
        bool active = false;
        clap_process_status status = CLAP_PROCESS_ERROR;
    };
}
