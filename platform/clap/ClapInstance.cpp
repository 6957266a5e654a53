#include "ClapInstance.h"

#include "ClapExtensions.h"
#include "ClapStreams.h"

#include <algorithm>

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter();

namespace
{
    // Room for this many three-byte MIDI events in one piece of a block;
    // more are dropped rather than allocated for on the audio thread.
    constexpr int midiEventCapacity = 2048;
    constexpr int bytesPerMidiEvent = (int) (sizeof (int32_t) + sizeof (uint16_t)) + 3;

    bool isParameterValue (const clap_event_header_t& event) noexcept
    {
        return event.space_id == CLAP_CORE_EVENT_SPACE_ID && event.type == CLAP_EVENT_PARAM_VALUE;
    }
}

ClapInstance::ClapInstance (const clap_host_t& h, const clap_plugin_descriptor_t& descriptor) : host (h)
{
    plugin.desc = &descriptor;
    plugin.plugin_data = this;
    plugin.init = [] (const clap_plugin_t* p) { return from (p).init(); };
    plugin.destroy = [] (const clap_plugin_t* p) { delete &from (p); };
    plugin.activate = [] (const clap_plugin_t* p, double rate, uint32_t, uint32_t maxFrames) { return from (p).activate (rate, maxFrames); };
    plugin.deactivate = [] (const clap_plugin_t* p) { from (p).deactivate(); };
    plugin.start_processing = [] (const clap_plugin_t*) { return true; };
    plugin.stop_processing = [] (const clap_plugin_t*) {};
    plugin.reset = [] (const clap_plugin_t* p) { from (p).reset(); };
    plugin.process = [] (const clap_plugin_t* p, const clap_process_t* process) { return from (p).process (*process); };
    plugin.get_extension = [] (const clap_plugin_t*, const char* id) { return ClapExtensions::find (id); };
    plugin.on_main_thread = [] (const clap_plugin_t*) {};
}

ClapInstance::~ClapInstance()
{
    editor.reset();

    if (processor != nullptr)
    {
        // Its timers stop while the message thread, wherever it runs, is held.
        const juce::MessageManagerLock lock;

        if (echo != nullptr)
            processor->removeListener (echo.get());

        processor.reset();
    }

    messageLoop.reset();
}

ClapInstance& ClapInstance::from (const clap_plugin_t* p) noexcept
{
    return *static_cast<ClapInstance*> (p->plugin_data);
}

bool ClapInstance::init()
{
    messageLoop = std::make_unique<ClapMessageLoop> (host);

    processor.reset (createPluginFilter());

    if (processor == nullptr)
        return false;

    if (host.get_extension != nullptr)
    {
        hostParams = static_cast<const clap_host_params_t*> (host.get_extension (&host, CLAP_EXT_PARAMS));
        threadCheck = static_cast<const clap_host_thread_check_t*> (host.get_extension (&host, CLAP_EXT_THREAD_CHECK));
    }

    std::function<bool()> isAudioThread;

    if (threadCheck != nullptr && threadCheck->is_audio_thread != nullptr)
        isAudioThread = [this] { return threadCheck->is_audio_thread (&host); };

    processor->setPlayHead (&playHead);
    echo = std::make_unique<ClapParameterEcho> ((int) getNumParameters(), [this] { requestFlush(); }, std::move (isAudioThread));
    processor->addListener (echo.get());
    return true;
}

void ClapInstance::requestFlush()
{
    if (hostParams != nullptr && hostParams->request_flush != nullptr)
        hostParams->request_flush (&host);
}

bool ClapInstance::activate (double sampleRate, uint32_t maxFramesCount)
{
    const auto maxFrames = (int) std::max (maxFramesCount, 1u);
    processor->setRateAndBufferSizeDetails (sampleRate, maxFrames);
    processor->prepareToPlay (sampleRate, maxFrames);
    midi.ensureSize ((size_t) (midiEventCapacity * bytesPerMidiEvent));
    return true;
}

void ClapInstance::deactivate()
{
    processor->releaseResources();
}

void ClapInstance::reset()
{
    processor->reset();
}

uint32_t ClapInstance::getNumParameters() const
{
    return (uint32_t) processor->getParameters().size();
}

juce::AudioProcessorParameter* ClapInstance::getParameter (clap_id id) const
{
    return id < getNumParameters() ? processor->getParameters()[(int) id] : nullptr;
}

uint32_t ClapInstance::getLatency() const
{
    return (uint32_t) std::max (processor->getLatencySamples(), 0);
}

//==============================================================================
// The block is cut at every parameter change inside it, so that each change
// reaches the processor after the samples before it were rendered with the
// old value. MIDI events ride along with the piece they fall in; the
// processor splits its pieces at them itself.
clap_process_status ClapInstance::process (const clap_process_t& p)
{
    const ClapParameterEcho::ProcessingScope processing (*echo);

    if (p.audio_outputs_count < 1 || p.audio_outputs[0].channel_count < 2 || p.audio_outputs[0].data32 == nullptr)
        return CLAP_PROCESS_ERROR;

    const auto frames = p.frames_count;
    float* const* outputs = p.audio_outputs[0].data32;
    const bool hasInput = p.audio_inputs_count > 0 && p.audio_inputs[0].channel_count >= 2 && p.audio_inputs[0].data32 != nullptr;

    for (uint32_t channel = 0; channel < 2; ++channel)
    {
        const float* input = hasInput ? p.audio_inputs[0].data32[channel] : nullptr;

        if (input == nullptr)
            std::fill (outputs[channel], outputs[channel] + frames, 0.0f);
        else if (input != outputs[channel])
            std::copy (input, input + frames, outputs[channel]);
    }

    playHead.setTransport (p.transport);

    const auto numEvents = p.in_events != nullptr ? p.in_events->size (p.in_events) : 0u;
    uint32_t next = 0, start = 0;

    do
    {
        midi.clear();
        midiBytesLeft = midiEventCapacity * bytesPerMidiEvent;
        uint32_t end = frames;

        for (; next < numEvents; ++next)
        {
            const auto* event = p.in_events->get (p.in_events, next);

            if (event == nullptr)
                continue;

            if (isParameterValue (*event) && event->time > start && event->time < frames)
            {
                end = event->time;
                break;
            }

            handleEvent (*event, start);
        }

        render (outputs, start, end - start);
        start = end;
    }
    while (start < frames);

    playHead.setTransport (nullptr);

    if (p.out_events != nullptr)
        echo->writeTo (*p.out_events, frames > 0 ? frames - 1 : 0);

    return CLAP_PROCESS_CONTINUE;
}

void ClapInstance::render (float* const* channels, uint32_t start, uint32_t numFrames)
{
    if (numFrames == 0 && midi.isEmpty())
        return;

    float* piece[] = { channels[0] + start, channels[1] + start };
    juce::AudioBuffer<float> buffer (piece, 2, (int) numFrames);
    processor->processBlock (buffer, midi);
}

void ClapInstance::handleEvent (const clap_event_header_t& event, uint32_t segmentStart)
{
    if (event.space_id != CLAP_CORE_EVENT_SPACE_ID)
        return;

    if (event.type == CLAP_EVENT_PARAM_VALUE)
    {
        const auto& change = reinterpret_cast<const clap_event_param_value_t&> (event);

        if (auto* parameter = getParameter (change.param_id))
            parameter->setValue ((float) juce::jlimit (0.0, 1.0, change.value));
    }
    else if (event.type == CLAP_EVENT_MIDI)
    {
        const auto& message = reinterpret_cast<const clap_event_midi_t&> (event);
        const int size = juce::MidiMessage::getMessageLengthFromFirstByte (message.data[0]);

        if (message.port_index != 0 || midiBytesLeft < bytesPerMidiEvent)
            return;

        const auto position = event.time > segmentStart ? (int) (event.time - segmentStart) : 0;
        midi.addEvent (message.data, size, position);
        midiBytesLeft -= bytesPerMidiEvent;
    }
}

void ClapInstance::flush (const clap_input_events_t* in, const clap_output_events_t* out)
{
    const ClapParameterEcho::ProcessingScope processing (*echo);
    const auto numEvents = in != nullptr ? in->size (in) : 0u;

    for (uint32_t i = 0; i < numEvents; ++i)
        if (const auto* event = in->get (in, i); event != nullptr && isParameterValue (*event))
            handleEvent (*event, 0);

    if (out != nullptr)
        echo->writeTo (*out, 0);
}

//==============================================================================
bool ClapInstance::saveState (const clap_ostream_t& stream)
{
    juce::MemoryBlock state;
    processor->getStateInformation (state);
    return ClapStreams::writeAll (stream, state);
}

bool ClapInstance::loadState (const clap_istream_t& stream)
{
    juce::MemoryBlock state;

    if (! ClapStreams::readAll (stream, state))
        return false;

    {
        const ClapParameterEcho::QuietScope quiet (*echo);
        processor->setStateInformation (state.getData(), (int) state.getSize());
    }

    if (hostParams != nullptr && hostParams->rescan != nullptr)
        hostParams->rescan (&host, CLAP_PARAM_RESCAN_VALUES | CLAP_PARAM_RESCAN_TEXT);

    return true;
}

void ClapInstance::onTimer (clap_id timerId)
{
    messageLoop->onTimer (timerId);
}

//==============================================================================
bool ClapInstance::createEditor()
{
    if (editor != nullptr)
        return false;

    editor = std::make_unique<ClapEditor> (*processor, host);

    if (! editor->hasEditor())
        editor.reset();

    return editor != nullptr;
}

void ClapInstance::destroyEditor()
{
    editor.reset();
}
