// Parameter changes and preset changes reach the engine through one inbox, in
// the order they were made, so that the engine always runs what the
// parameters hold; and the audio thread applies a preset as one whole slot of
// one bank, whatever the message thread is loading meanwhile.

#include "ProbeEffect.h"
#include "tests/support/PluginBlocks.h"
#include "tests/support/ScopedConfigHome.h"

#include <gtest/gtest.h>

#include <thread>

// A program change and a controller moving one of the preset's parameters in
// the same host block, either one first: after every block the engine runs
// what the parameters show (and the quality's step), through a silent
// change's fade as well.
TEST (ChangeRouting, ProgramChangesAndAutomationInOneBlockLeaveTheEngineOnTheParameters)
{
    const ScopedConfigHome home;
    constexpr int lateSize = 6, controller = 20, program = 3;

    for (const auto changing : { BasePluginOldStyle::normalChange, BasePluginOldStyle::silentChange })
    {
        for (const bool programFirst : { true, false })
        {
            SCOPED_TRACE (juce::String (changing == BasePluginOldStyle::silentChange ? "silent" : "normal")
                          + (programFirst ? ", program first" : ", controller first"));
            ProbeEffect fx;
            fx.loadBank (0);
            fx.setChangingType (changing);
            fx.getMidiControl().assign (controller, fx.getPluginParameter (lateSize), true);
            fx.getParameterManager().findParameter ("Quality")->setNormalisedValue (0.5f, ChangeOrigin::editor);
            fx.prepareToPlay (48000.0, 256);
            processBlocks (fx, 256, 1);

            juce::MidiBuffer midi;
            midi.addEvent (juce::MidiMessage::programChange (1, program), programFirst ? 10 : 100);
            midi.addEvent (juce::MidiMessage::controllerEvent (1, controller, 127), programFirst ? 100 : 10);
            processBlocks (fx, 256, 1, midi);

            for (int block = 0; block < 2 * ProbeCore::fadeCalls; ++block)
            {
                const auto live = liveValues (fx);
                for (size_t i = 0; i < live.size(); ++i)
                    ASSERT_EQ (fx.probe->runs ((uint32_t) i), live[i]) << "parameter " << i << ", block " << block;

                ASSERT_EQ (fx.probe->quality, 2) << "the quality reaches the engine as its step, rounded";

                processBlocks (fx, 256, 1);
            }

            const auto preset = ProbeEffect::valuesOf (0, program);
            const bool presetLast = ! programFirst || changing == BasePluginOldStyle::silentChange;
            const auto live = liveValues (fx);
            EXPECT_NEAR (live[lateSize], presetLast ? preset[lateSize] : 1.0f, 1e-6f)
                << "the later change wins; a silent change applies at its quiet point";
            EXPECT_NEAR (live[lateSize + 1], preset[lateSize + 1], 1e-6f);
        }
    }
}

// Ten seconds of program changes on an audio thread while the message thread
// loads one bank and then another: every preset applied is one whole slot of
// one of the two banks.
TEST (ChangeRouting, ProgramChangesApplyWholeSlotsWhileBanksLoad)
{
    const ScopedConfigHome home;
    ProbeEffect fx;
    fx.loadBank (0);
    fx.prepareToPlay (48000.0, 256);

    std::atomic<bool> running { true };
    std::atomic<int> applied { 0 }, torn { 0 };

    std::thread audio ([&]
    {
        juce::AudioBuffer<float> buffer (2, 64);
        juce::MidiBuffer midi;

        for (int block = 0; running; ++block)
        {
            const int program = block % BasePluginOldStyle::numSlots;
            midi.clear();
            midi.addEvent (juce::MidiMessage::programChange (1, program), 0);
            fx.processBlock (buffer, midi);

            const auto live = liveValues (fx);
            const auto isSlotOf = [&] (int bank)
            {
                const auto expected = ProbeEffect::valuesOf (bank, program);
                return std::equal (live.begin(), live.end(), expected.begin(), [] (float a, float b) { return std::abs (a - b) <= 1e-6f; });
            };

            ++applied;
            torn += ! isSlotOf (0) && ! isSlotOf (1);
        }
    });

    const auto end = juce::Time::getMillisecondCounter() + 10000;

    for (int load = 0; juce::Time::getMillisecondCounter() < end; ++load)
    {
        fx.loadBank (load % 2);
        juce::MessageManager::getInstance()->runDispatchLoopUntil (1);
    }

    running = false;
    audio.join();
    EXPECT_GT (applied.load(), 1000);
    EXPECT_EQ (torn.load(), 0) << "of " << applied.load() << " presets applied";
}
