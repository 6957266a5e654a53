// A busy session (AudioThreadCounters.h) on audio threads of their own,
// in process, while the message thread plays with the editor.

#include "AudioThreadCounters.h"

#include "../support/MidiMapChecks.h"
#include "../support/PluginBlocks.h"

#include "editor/BasePluginEditor.h"
#include "editor/GFXKnob.h"
#include "engine/Quorlane.h"

#include <gtest/gtest.h>

#include <numeric>

namespace
{
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
        plugin.getMidiControl().assign (20 + i, plugin.getPluginParameter ((uint32_t) i), true);

    prepare (plugin, largestBlock);

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

    for (size_t i = 0; i < noise.size(); ++i)
        noise[i] = (float) (i * 7919 % 1000) / 1000.0f - 0.5f;

    juce::AudioBuffer<float> buffer (2, largestBlock);
    juce::MidiBuffer midi;
    midi.ensureSize (4096);
    const auto hostParameters = plugin.getParameters();
    int lastProgram = -1;

    const auto play = [&] (const SessionBlock& block)
    {
        const int n = blockSizes[block.number % std::size (blockSizes)];

        for (int channel = 0; channel < 2; ++channel)
            buffer.copyFrom (channel, 0, noise.data() + channel * largestBlock, n);

        for (int i = 0; i < numParameters; ++i)
        {
            hostParameters[i]->setValue (block.automation (i));
            hostParameters[i]->sendValueChangedMessageToListeners (block.automation (i));
        }

        // Controllers 90 to 94 are free for learning.
        midi.clear();
        midi.addEvent (juce::MidiMessage::controllerEvent (1, block.controller(), block.controllerValue()), 0);
        midi.addEvent (SessionBlock::sysEx, (int) sizeof (SessionBlock::sysEx), n / 3);
        midi.addEvent (juce::MidiMessage::controllerEvent (1, 90 + block.number % 5, 64), n / 2);

        if (block.program() >= 0)
            midi.addEvent (juce::MidiMessage::programChange (1, lastProgram = block.program()), n - 1);

        juce::AudioBuffer<float> view (buffer.getArrayOfWritePointers(), 2, n);
        plugin.processBlock (view, midi);
    };

    // Ten seconds at the blocks' mean size, while the user turns knobs,
    // switches learn and the kind of preset change.
    int turn = 0;
    playWatched ((int) (48000.0 * 10 * (double) std::size (blockSizes)
                        / std::accumulate (std::begin (blockSizes), std::end (blockSizes), 0.0)),
                 play, [] {}, [&]
    {
        juce::MessageManager::getInstance()->runDispatchLoopUntil (2);
        knobs[turn % knobs.size()]->setValue ((turn % 50) / 49.0, juce::sendNotificationSync);
        plugin.getMidiControl().setLearnMode (turn % 8 < 4);
        plugin.setChangingType (turn++ % 16 < 8 ? BasePluginOldStyle::silentChange : BasePluginOldStyle::normalChange);
    });

    // What the audio thread left for the message thread arrives there.
    plugin.getMidiControl().setLearnMode (false);
    juce::MessageManager::getInstance()->runDispatchLoopUntil (200);
    EXPECT_EQ ((int) plugin.getCurrentPresetIndex(), lastProgram);
    EXPECT_EQ (plugin.getPluginParameter (BasePluginOldStyle::currentPresetNameIndex)->getText(),
               plugin.getSlotName (lastProgram));

    // Learning moved parameters between controllers while they were played;
    // still no parameter follows two controllers.
    EXPECT_EQ (midiMapProblems (plugin.getMidiControl()), juce::String());

    plugin.editorBeingDeleted (editor.get());
    editor.reset();
    plugin.releaseResources();
}
