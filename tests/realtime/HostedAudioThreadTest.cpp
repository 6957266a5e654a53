// The VST3 and LV2 builds as a Linux DAW runs them: made on a host thread,
// the editor open, a busy session (AudioThreadCounters.h) played on audio
// threads of their own in real time while the host's message loop and the
// wrapper's own message thread run. Heap calls are the plug-in library's
// alone: JUCE's hosting in this executable copies SysEx to the heap.

#include "AudioThreadCounters.h"

#include "../support/HostedFormats.h"
#include "../support/ParameterNames.h"
#include "../support/PluginBlocks.h"
#include "../support/ScopedConfigHome.h"

#include <gtest/gtest.h>

#include <cmath>

using HostedAudioThread = ::testing::TestWithParam<HostedFormat>;

TEST_P (HostedAudioThread, NeverAllocatesOrPosts)
{
    const ScopedConfigHome home;
    home.writeSettings ("<PresetSettings storing=\"automatic\"/>");
    constexpr int blockSize = 256;
    auto plugin = instantiateHosted (GetParam(), blockSize);
    ASSERT_NE (plugin, nullptr) << GetParam().identifier;

    std::vector<juce::AudioProcessorParameter*> parameters;

    for (const auto* name : quorlaneParameterNames)
    {
        parameters.push_back (parameterNamed (*plugin, name));
        ASSERT_NE (parameters.back(), nullptr) << name;
    }

    std::unique_ptr<juce::AudioProcessorEditor> editor (plugin->createEditorIfNeeded());
    ASSERT_NE (editor, nullptr);
    editor->addToDesktop (0);
    editor->setVisible (true);
    runMessageLoop (200);

    juce::AudioBuffer<float> buffer (2, blockSize);
    juce::MidiBuffer midi;
    midi.ensureSize (4096);
    AudioThreadCounters::countLibrariesOnly();

    // Three seconds in real time.
    playWatched (3 * 48000 / blockSize, [&] (const SessionBlock& block)
    {
        for (size_t i = 0; i < parameters.size(); ++i)
            parameters[i]->setValue (block.automation ((int) i));

        midi.clear();
        midi.addEvent (juce::MidiMessage::controllerEvent (1, block.controller(), block.controllerValue()), 10);
        midi.addEvent (SessionBlock::sysEx, (int) sizeof (SessionBlock::sysEx), 100);

        if (block.program() >= 0)
            midi.addEvent (juce::MidiMessage::programChange (1, block.program()), blockSize - 1);

        for (int channel = 0; channel < 2; ++channel)
            for (int i = 0; i < blockSize; ++i)
                buffer.setSample (channel, i, 0.25f * std::sin ((float) (block.number * blockSize + i) * 0.05f));

        plugin->processBlock (buffer, midi);
    },
    // Made once, before they are watched: a wrapper's flag per thread, on the
    // thread's first parameter change (glibc's allocation for a library's
    // thread-local data), and JUCE's VST3 host's list of events, as it grows.
    [&]
    {
        parameters.front()->setValue (0.5f);
        midi.clear();
        midi.addEvent (juce::MidiMessage::controllerEvent (1, 20, 0), 0);
        midi.addEvent (juce::MidiMessage::programChange (1, 0), 2);
        plugin->processBlock (buffer, midi);
    },
    [] { runMessageLoop (10); }, std::chrono::microseconds (1000000 * blockSize / 48000));

    editor.reset();
    runMessageLoop();
}

INSTANTIATE_TEST_SUITE_P (Formats, HostedAudioThread, ::testing::ValuesIn (hostedFormats()),
    [] (const auto& info) { return info.param.name.toStdString(); });
