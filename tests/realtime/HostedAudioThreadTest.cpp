// The VST3 and LV2 builds as a Linux DAW runs them: made on a host thread,
// the editor open, automation of every parameter, controllers, SysEx and
// program changes played on an audio thread of their own in real time while
// the host's message loop and the wrapper's own message thread run. Nothing
// the plug-in library does on the audio thread may touch the heap, and
// nothing there may post or take a lock in our code (JUCE's hosting in this
// executable copies SysEx to the heap; that is the test host's). The wrappers take JUCE's own
// locks there (the callback lock, parameter listeners, which the message
// thread shares, and the message-thread check): those are named and left.

#include "AudioThreadCounters.h"

#include "../support/HostedFormats.h"
#include "../support/ParameterNames.h"
#include "../support/PluginBlocks.h"
#include "../support/ScopedConfigHome.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace
{
    class HostedAudioThread : public ::testing::TestWithParam<HostedFormat>
    {
    };
}

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

    // Longer than any short message, which a MidiMessage would hold in place.
    const juce::uint8 sysEx[] = { 0xf0, 0x7e, 0x7f, 0x06, 0x01, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0xf7 };
    AudioThreadCounters::countLibrariesOnly();

    const auto playBlock = [&] (int block)
    {
        for (size_t i = 0; i < parameters.size(); ++i)
            parameters[i]->setValue ((float) ((block * 7 + (int) i * 13) % 101) / 100.0f);

        midi.clear();
        midi.addEvent (juce::MidiMessage::controllerEvent (1, 20 + block % 8, block % 128), 10);
        midi.addEvent (sysEx, (int) sizeof (sysEx), 100);

        if (block % 40 == 0)
            midi.addEvent (juce::MidiMessage::programChange (1, (block / 40) % 47), blockSize - 1);

        for (int channel = 0; channel < 2; ++channel)
            for (int i = 0; i < blockSize; ++i)
                buffer.setSample (channel, i, 0.25f * std::sin ((float) (block * blockSize + i) * 0.05f));

        plugin->processBlock (buffer, midi);
    };

    // Made once, before they are watched: a wrapper's flag per thread, on the
    // thread's first parameter change (glibc's allocation for a library's
    // thread-local data), and JUCE's VST3 host's list of events, as it grows.
    const auto firstMove = [&]
    {
        parameters.front()->setValue (0.5f);
        midi.clear();
        midi.addEvent (juce::MidiMessage::controllerEvent (1, 20, 0), 0);
        midi.addEvent (juce::MidiMessage::programChange (1, 0), 2);
        plugin->processBlock (buffer, midi);
    };

    std::atomic<bool> finished { false };

    const auto play = [&] (int firstBlock, int lastBlock)
    {
        firstMove();
        const AudioThreadCounters::Watch watch;
        auto due = std::chrono::steady_clock::now();

        for (int block = firstBlock; block < lastBlock; ++block)
        {
            playBlock (block);
            due += std::chrono::microseconds (1000000 * blockSize / 48000);
            std::this_thread::sleep_until (due);
        }
    };

    // Three seconds in real time.
    const int blocks = 3 * 48000 / blockSize;
    std::thread audioThread ([&]
    {
        playOnTwoAudioThreads (blocks, play);
        finished = true;
    });

    while (! finished)
        runMessageLoop (10);

    audioThread.join();
    expectNothingForbidden();

    editor.reset();
    runMessageLoop();
}

INSTANTIATE_TEST_SUITE_P (Formats, HostedAudioThread, ::testing::ValuesIn (hostedFormats()),
    [] (const auto& info) { return info.param.name.toStdString(); });
