#include "ClapExtensions.h"

#include "ClapInstance.h"

#include <clap/ext/audio-ports.h>
#include <clap/ext/gui.h>
#include <clap/ext/latency.h>
#include <clap/ext/note-ports.h>
#include <clap/ext/params.h>
#include <clap/ext/state.h>
#include <clap/ext/timer-support.h>

#include <cstring>

namespace
{
    ClapInstance& instance (const clap_plugin_t* plugin) { return ClapInstance::from (plugin); }

    // One stereo pair in, one out, processed in place.
    const clap_plugin_audio_ports_t audioPorts {
        [] (const clap_plugin_t*, bool) -> uint32_t { return 1; },
        [] (const clap_plugin_t*, uint32_t index, bool isInput, clap_audio_port_info_t* info)
        {
            if (index != 0 || info == nullptr)
                return false;

            info->id = 0;
            std::strncpy (info->name, isInput ? "Input" : "Output", CLAP_NAME_SIZE);
            info->flags = CLAP_AUDIO_PORT_IS_MAIN;
            info->channel_count = 2;
            info->port_type = CLAP_PORT_STEREO;
            info->in_place_pair = 0;
            return true;
        }
    };

    // Controllers and program changes come in as MIDI 1.0 messages.
    const clap_plugin_note_ports_t notePorts {
        [] (const clap_plugin_t*, bool isInput) -> uint32_t { return isInput ? 1 : 0; },
        [] (const clap_plugin_t*, uint32_t index, bool isInput, clap_note_port_info_t* info)
        {
            if (index != 0 || ! isInput || info == nullptr)
                return false;

            info->id = 0;
            info->supported_dialects = CLAP_NOTE_DIALECT_MIDI;
            info->preferred_dialect = CLAP_NOTE_DIALECT_MIDI;
            std::strncpy (info->name, "MIDI In", CLAP_NAME_SIZE);
            return true;
        }
    };

    const clap_plugin_latency_t latency {
        [] (const clap_plugin_t* plugin) { return instance (plugin).getLatency(); }
    };

    const clap_plugin_params_t params {
        [] (const clap_plugin_t* plugin) { return instance (plugin).getNumParameters(); },
        [] (const clap_plugin_t* plugin, uint32_t index, clap_param_info_t* info)
        {
            const auto* parameter = instance (plugin).getParameter (index);

            if (parameter == nullptr || info == nullptr)
                return false;

            *info = {};
            info->id = index;
            info->flags = parameter->isAutomatable() ? (clap_param_info_flags) CLAP_PARAM_IS_AUTOMATABLE : 0u;
            parameter->getName (CLAP_NAME_SIZE - 1).copyToUTF8 (info->name, CLAP_NAME_SIZE);
            info->min_value = 0.0;
            info->max_value = 1.0;
            info->default_value = parameter->getDefaultValue();
            return true;
        },
        [] (const clap_plugin_t* plugin, clap_id id, double* value)
        {
            const auto* parameter = instance (plugin).getParameter (id);

            if (parameter == nullptr || value == nullptr)
                return false;

            *value = parameter->getValue();
            return true;
        },
        [] (const clap_plugin_t* plugin, clap_id id, double value, char* display, uint32_t size)
        {
            const auto* parameter = instance (plugin).getParameter (id);

            if (parameter == nullptr || display == nullptr || size == 0)
                return false;

            parameter->getText ((float) juce::jlimit (0.0, 1.0, value), (int) size - 1).copyToUTF8 (display, size);
            return true;
        },
        [] (const clap_plugin_t* plugin, clap_id id, const char* display, double* value)
        {
            const auto* parameter = instance (plugin).getParameter (id);

            if (parameter == nullptr || display == nullptr || value == nullptr)
                return false;

            *value = parameter->getValueForText (juce::String::fromUTF8 (display));
            return true;
        },
        [] (const clap_plugin_t* plugin, const clap_input_events_t* in, const clap_output_events_t* out)
        {
            instance (plugin).flush (in, out);
        }
    };

    const clap_plugin_state_t state {
        [] (const clap_plugin_t* plugin, const clap_ostream_t* stream) { return stream != nullptr && instance (plugin).saveState (*stream); },
        [] (const clap_plugin_t* plugin, const clap_istream_t* stream) { return stream != nullptr && instance (plugin).loadState (*stream); }
    };

    // Embedded in the host's window only; the editor has one size per scale and zoom.
    const clap_plugin_gui_t gui {
        [] (const clap_plugin_t*, const char* api, bool isFloating)
        {
            return api != nullptr && ! isFloating && std::strcmp (api, ClapEditor::windowApi()) == 0;
        },
        [] (const clap_plugin_t*, const char** api, bool* isFloating)
        {
            if (api == nullptr || isFloating == nullptr)
                return false;

            *api = ClapEditor::windowApi();
            *isFloating = false;
            return true;
        },
        [] (const clap_plugin_t* plugin, const char* api, bool isFloating)
        {
            return api != nullptr && ! isFloating && std::strcmp (api, ClapEditor::windowApi()) == 0
                && instance (plugin).createEditor();
        },
        [] (const clap_plugin_t* plugin) { instance (plugin).destroyEditor(); },
        [] (const clap_plugin_t* plugin, double scale)
        {
            auto* editor = instance (plugin).getEditor();
            return editor != nullptr && editor->setScale (scale);
        },
        [] (const clap_plugin_t* plugin, uint32_t* width, uint32_t* height)
        {
            auto* editor = instance (plugin).getEditor();

            if (editor == nullptr || width == nullptr || height == nullptr)
                return false;

            editor->getSize (*width, *height);
            return true;
        },
        [] (const clap_plugin_t*) { return false; },
        [] (const clap_plugin_t*, clap_gui_resize_hints_t*) { return false; },
        [] (const clap_plugin_t*, uint32_t*, uint32_t*) { return false; },
        [] (const clap_plugin_t* plugin, uint32_t width, uint32_t height)
        {
            // Only the size it already has.
            auto* editor = instance (plugin).getEditor();
            uint32_t w = 0, h = 0;

            if (editor != nullptr)
                editor->getSize (w, h);

            return editor != nullptr && w == width && h == height;
        },
        [] (const clap_plugin_t* plugin, const clap_window_t* window)
        {
            auto* editor = instance (plugin).getEditor();
            return editor != nullptr && window != nullptr && editor->setParent (*window);
        },
        [] (const clap_plugin_t*, const clap_window_t*) { return false; },
        [] (const clap_plugin_t*, const char*) {},
        [] (const clap_plugin_t* plugin)
        {
            auto* editor = instance (plugin).getEditor();

            if (editor != nullptr)
                editor->setVisible (true);

            return editor != nullptr;
        },
        [] (const clap_plugin_t* plugin)
        {
            auto* editor = instance (plugin).getEditor();

            if (editor != nullptr)
                editor->setVisible (false);

            return editor != nullptr;
        }
    };

    const clap_plugin_timer_support_t timerSupport {
        [] (const clap_plugin_t* plugin, clap_id timerId) { instance (plugin).onTimer (timerId); }
    };

    struct Extension
    {
        const char* id;
        const void* table;
    };

    const Extension extensions[] = {
        { CLAP_EXT_AUDIO_PORTS, &audioPorts },
        { CLAP_EXT_NOTE_PORTS, &notePorts },
        { CLAP_EXT_LATENCY, &latency },
        { CLAP_EXT_PARAMS, &params },
        { CLAP_EXT_STATE, &state },
        { CLAP_EXT_GUI, &gui },
        { CLAP_EXT_TIMER_SUPPORT, &timerSupport },
    };
}

const void* ClapExtensions::find (const char* id)
{
    if (id != nullptr)
        for (const auto& extension : extensions)
            if (std::strcmp (id, extension.id) == 0)
                return extension.table;

    return nullptr;
}
