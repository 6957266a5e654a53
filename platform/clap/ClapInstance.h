#pragma once

#include "ClapEditor.h"
#include "ClapMessageLoop.h"
#include "ClapParameterEcho.h"
#include "ClapPlayHead.h"

#include <clap/ext/params.h>
#include <clap/ext/thread-check.h>
#include <clap/plugin.h>
#include <clap/stream.h>
#include <juce_audio_processors/juce_audio_processors.h>

#include <memory>

// One instance of the plug-in as a CLAP host sees it: the same processor the
// other formats wrap, driven through the clap_plugin calls and the
// extensions of ClapExtensions.cpp. Parameters are the processor's host
// parameters, addressed by index as their CLAP id, normalised 0..1.
class ClapInstance
{
public:
    ClapInstance (const clap_host_t& host, const clap_plugin_descriptor_t& descriptor);
    ~ClapInstance();

    const clap_plugin_t* getPlugin() const noexcept { return &plugin; }
    static ClapInstance& from (const clap_plugin_t* plugin) noexcept;

    // Main thread.
    bool init();
    bool activate (double sampleRate, uint32_t maxFramesCount);
    void deactivate();
    juce::AudioProcessorParameter* getParameter (clap_id id) const;
    uint32_t getNumParameters() const;
    uint32_t getLatency() const;
    bool saveState (const clap_ostream_t& stream);
    bool loadState (const clap_istream_t& stream);
    void onTimer (clap_id timerId);

    // The editor, between the host's gui create() and destroy(); null
    // otherwise.
    bool createEditor();
    void destroyEditor();
    ClapEditor* getEditor() const noexcept { return editor.get(); }

    // Audio thread.
    void reset();
    clap_process_status process (const clap_process_t& process);
    // Parameter changes while the host is not processing.
    void flush (const clap_input_events_t* in, const clap_output_events_t* out);

private:
    // Takes one event of the block; controllers and program changes go into
    // the MIDI buffer at their position relative to `segmentStart`.
    void handleEvent (const clap_event_header_t& event, uint32_t segmentStart);
    void render (float* const* channels, uint32_t start, uint32_t numFrames);
    void requestFlush();

    const clap_host_t& host;
    const clap_host_params_t* hostParams = nullptr;
    const clap_host_thread_check_t* threadCheck = nullptr;
    clap_plugin_t plugin;

    std::unique_ptr<ClapMessageLoop> messageLoop;
    std::unique_ptr<juce::AudioProcessor> processor;
    std::unique_ptr<ClapParameterEcho> echo;
    std::unique_ptr<ClapEditor> editor;
    ClapPlayHead playHead;
    juce::MidiBuffer midi;
    int midiBytesLeft = 0;
};
