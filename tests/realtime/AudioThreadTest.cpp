// Ten seconds of a busy session on audio threads of their own, while the
// message thread plays with the editor: an audio thread must never touch the
// heap, take a lock of ours, wait on any lock or post a message, from its very
// first block on, and neither must a second audio thread that the host starts
// halfway (hosts change threads when their engine restarts). SysEx longer than
// a short message arrives with the controllers.

#include "AudioThreadCounters.h"

#include "editor/BasePluginEditor.h"
#include "editor/GFXKnob.h"
#include "engine/Quorlane.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <set>
#include <thread>

namespace
{
constexpr double sampleRate = 48000.0;
constexpr int firstController = 20;
constexpr int numParameters = BasePlugin::hostParameterCount;

// Host blocks of 64 and 1024 and odd sizes, in turn.
constexpr int blockSizes[] = { 64, 1024, 17, 64, 333, 1024, 1 };
constexpr int largestBlock = 1024;
}

TEST (AudioThread, NeverAllocatesWaitsOrPosts)
{
    Quorlane plugin;
    plugin.setStoringMode (BasePluginOldStyle::automaticStoring);

    for (int i = 0; i < numParameters; ++i)
        plugin.getMidiControl().assign (firstController + i, plugin.getPluginParameter ((uint32_t) i), true);

    plugin.setPlayConfigDetails (2, 2, sampleRate, largestBlock);
    plugin.prepareToPlay (sampleRate, largestBlock);

    std::unique_ptr<juce::AudioProcessorEditor> editor (plugin.createEditorIfNeeded());
    auto* skinned = dynamic_cast<BasePluginEditor*> (editor.get());
    ASSERT_NE (skinned, nullptr);
    juce::Array<GFXKnob*> knobs;

    for (auto* control : skinned->getControllers())
        if (auto* knob = dynamic_cast<GFXKnob*> (control))
            knobs.add (knob);

    ASSERT_GE (knobs.size(), 10);

    // Everything the audio thread uses is made before it starts.
    std::vector<float> noise ((size_t) largestBlock * 2);
    std::mt19937 random (3);
    std::uniform_real_distribution<float> dist (-0.5f, 0.5f);

    for (auto& x : noise)
        x = dist (random);

    juce::AudioBuffer<float> buffer (2, largestBlock);
    juce::MidiBuffer midi;
    midi.ensureSize (4096);
    const auto hostParameters = plugin.getParameters();
    std::atomic<bool> finished { false };

    int lastProgram = -1;
    const juce::uint8 sysEx[] = { 0xf0, 0x7e, 0x7f, 0x06, 0x01, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0xf7 };

    const auto play = [&] (int firstBlock, int lastBlock)
    {
        const AudioThreadCounters::Watch watch;

        for (int block = firstBlock; block < lastBlock; ++block)
        {
            const int n = blockSizes[block % std::size (blockSizes)];

            for (int channel = 0; channel < 2; ++channel)
                buffer.copyFrom (channel, 0, noise.data() + channel * largestBlock, n);

            // Automation of every parameter, as a host plays it back.
            for (int i = 0; i < numParameters; ++i)
            {
                const float value = (float) ((block * 7 + i * 13) % 101) / 100.0f;
                hostParameters[i]->setValue (value);
                hostParameters[i]->sendValueChangedMessageToListeners (value);
            }

            midi.clear();
            midi.addEvent (juce::MidiMessage::controllerEvent (1, firstController + block % numParameters, block % 128), 0);
            midi.addEvent (sysEx, (int) sizeof (sysEx), n / 3);
            midi.addEvent (juce::MidiMessage::controllerEvent (1, 90 + block % 5, 64), n / 2);

            if (block % 40 == 0)
            {
                lastProgram = (block / 40) % 47;
                midi.addEvent (juce::MidiMessage::programChange (1, lastProgram), n - 1);
            }

            juce::AudioBuffer<float> view (buffer.getArrayOfWritePointers(), 2, n);
            plugin.processBlock (view, midi);
        }
    };

    // Ten seconds at the blocks' mean size, on two threads one after the other.
    const int blocks = (int) (sampleRate * 10 * (double) std::size (blockSizes)
                              / std::accumulate (std::begin (blockSizes), std::end (blockSizes), 0.0));

    std::thread audioThread ([&]
    {
        playOnTwoAudioThreads (blocks, play);
        finished = true;
    });

    // Meanwhile the user turns knobs, switches learn and the kind of preset change.
    for (int turn = 0; ! finished; ++turn)
    {
        juce::MessageManager::getInstance()->runDispatchLoopUntil (2);
        knobs[turn % knobs.size()]->setValue ((turn % 50) / 49.0, juce::sendNotificationSync);
        plugin.getMidiControl().setLearnMode (turn % 8 < 4);
        plugin.setChangingType (turn % 16 < 8 ? BasePluginOldStyle::silentChange : BasePluginOldStyle::normalChange);
    }

    audioThread.join();
    expectNothingForbidden();

    // What the audio thread left for the message thread arrives there.
    plugin.getMidiControl().setLearnMode (false);
    juce::MessageManager::getInstance()->runDispatchLoopUntil (200);
    EXPECT_EQ ((int) plugin.getCurrentPresetIndex(), lastProgram);
    EXPECT_EQ (plugin.getPluginParameter (BasePluginOldStyle::currentPresetNameIndex)->getText(),
               plugin.getSlotName (lastProgram));

    // Learning moved parameters between controllers while they were played;
    // still no parameter follows two controllers.
    std::set<const Parameter*> bound;

    for (int c = 0; c < MidiControl::numControllers; ++c)
    {
        if (const auto* parameter = plugin.getMidiControl().getParameterAt (c))
        {
            EXPECT_TRUE (bound.insert (parameter).second) << parameter->getName() << " on a second controller, " << c;
        }
    }

    plugin.editorBeingDeleted (editor.get());
    editor.reset();
    plugin.releaseResources();
}
