#include "editor/DialogFolder.h"
#include "framework/MidiControl.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{
    struct RecordingListener : MidiControl::Listener
    {
        RecordingListener (juce::StringArray& log, juce::String id) : calls (log), name (std::move (id)) {}
        void midiLearnModeChanged (bool isOn) override { calls.add (name + (isOn ? " on" : " off")); }
        void midiMapChanged() override { calls.add (name + " map"); }
        void midiLearnChoiceChanged() override { calls.add (name + " learn"); }
        void midiControllerMoved (Parameter& p) override { calls.add (name + " moved " + p.getName()); }

        juce::StringArray& calls;
        juce::String name;
    };

    juce::String quorlane() { return "Quorlane"; }

    class MidiControlTest : public ::testing::Test
    {
    protected:
        MidiControlTest() { parameters.load ("parameters.xml"); }

        Parameter& param (const char* name) { return *parameters.findParameter (name); }

        // A move on the audio thread, and the owner's next poll.
        void move (int controller, int value)
        {
            control.handleMessage (juce::MidiMessage::controllerEvent (3, controller, value));
            control.pollMessageThread();
        }

        ParameterManager parameters;
        MidiControl control { parameters, quorlane };
    };
}

TEST_F (MidiControlTest, AControllerMovesItsOneParameterOverTheWholeRangeOnAnyChannel)
{
    control.assign (7, &param ("FX"), true);
    control.assign (20, &param ("FX"), true);
    EXPECT_EQ (control.getControllerOf (&param ("FX")), 20) << "a parameter occupies one slot";
    EXPECT_EQ (control.getMappedCount(), 1);

    // The value over 127, so that 0 and 127 reach the ends.
    move (20, 64);
    EXPECT_NEAR (param ("FX").getNormalisedValue(), 0.503937f, 1e-6f);
    control.handleMessage (juce::MidiMessage::controllerEvent (16, 20, 127));
    EXPECT_EQ (param ("FX").getNormalisedValue(), 1.0f);

    move (7, 0);
    control.handleMessage (juce::MidiMessage::noteOn (1, 20, (juce::uint8) 0));
    EXPECT_EQ (param ("FX").getNormalisedValue(), 1.0f) << "unbound controllers and notes move nothing";

    control.assign (20, &param ("Late Size"), true);
    EXPECT_EQ (control.getControllerOf (&param ("FX")), -1);
    EXPECT_EQ (control.getMappedCount(), 1);

    control.remove (20);
    control.assign (128, &param ("FX"), true);
    control.assign (-1, &param ("FX"), true);
    EXPECT_EQ (control.getMappedCount(), 0);
}

TEST_F (MidiControlTest, LearningBindsInEitherOrderNeverTakesOverAnOccupiedControllerAndForgetsHalfChoices)
{
    control.setLearnMode (true);
    control.learnFromParameter (param ("FX"));
    move (30, 10);
    EXPECT_EQ (control.getParameterAt (30), &param ("FX"));
    EXPECT_NEAR (param ("FX").getNormalisedValue(), 10.0f / 127.0f, 1e-6f) << "the learning move already counts";

    // After a binding the next half starts a new choice.
    move (40, 0);
    control.learnFromParameter (param ("Late Size"));
    EXPECT_EQ (control.getParameterAt (40), &param ("Late Size"));

    control.learnFromParameter (param ("Early Size"));
    move (30, 100);
    EXPECT_EQ (control.getParameterAt (30), &param ("FX"));
    EXPECT_EQ (control.getControllerOf (&param ("Early Size")), -1);
    EXPECT_EQ (control.getLearnParameter(), &param ("Early Size")) << "the touched parameter stays chosen";
    EXPECT_EQ (control.getLearnController(), 30);

    // Once the user frees the controller, the next move binds.
    control.remove (30);
    control.learnFromParameter (param ("Early Size"));
    move (30, 5);
    EXPECT_EQ (control.getParameterAt (30), &param ("Early Size"));
    EXPECT_EQ (control.getMappedCount(), 2);

    // Every switch of learn mode, a toggle too, clears a half choice.
    control.learnFromParameter (param ("FX"));
    control.setLearnMode (false);
    move (31, 10);
    control.learnFromParameter (param ("FX"));
    EXPECT_EQ (control.getMappedCount(), 2) << "nothing is learnt outside learn mode";
    control.setLearnMode (true);
    EXPECT_EQ (control.getLearnParameter(), nullptr);
    move (31, 10);
    EXPECT_EQ (control.getMappedCount(), 2) << "the earlier touch was forgotten";
    ASSERT_EQ (control.getLearnController(), 31);
    EXPECT_FALSE (control.toggleLearnMode());
    EXPECT_TRUE (control.toggleLearnMode());
    EXPECT_EQ (control.getLearnController(), -1) << "a toggle clears a half choice like a switch does";
}

TEST_F (MidiControlTest, ListenersHearEveryLearnModeSwitchAtOnceAndTheRestOnTheMessageThread)
{
    juce::StringArray calls;
    RecordingListener first (calls, "first"), second (calls, "second");
    control.addListener (&first);
    control.addListener (&second);

    control.setLearnMode (true);
    EXPECT_EQ (calls, juce::StringArray ({ "second on", "first on" }));

    calls.clear();
    control.setLearnMode (true);
    control.learnFromParameter (param ("FX"));
    control.handleMessage (juce::MidiMessage::controllerEvent (3, 30, 127));
    control.handleMessage (juce::MidiMessage::controllerEvent (3, 31, 127));
    EXPECT_TRUE (calls.isEmpty()) << "nothing but the mode switch is reported synchronously";

    control.pollMessageThread();
    EXPECT_EQ (control.getParameterAt (30), &param ("FX")) << "the first controller to arrive is bound";
    EXPECT_EQ (param ("FX").getNormalisedValue(), 1.0f) << "and moves its parameter";
    EXPECT_EQ (calls, juce::StringArray ({ "second map", "second learn", "second moved FX",
                                           "first map", "first learn", "first moved FX" }));

    calls.clear();
    constexpr int togglesPerThread = 20000;
    const auto toggle = [this] { for (int i = 0; i < togglesPerThread; ++i) control.toggleLearnMode(); };
    std::thread one (toggle), other (toggle);
    one.join();
    other.join();
    EXPECT_EQ (calls.size(), 2 * 2 * togglesPerThread) << "no toggle from either thread was lost";
    EXPECT_TRUE (control.isLearnMode()) << "an even number of toggles from on ends on";
    control.removeListener (&first);
    control.removeListener (&second);
}

// A map saved as a file reads back into another control (clearing what it
// held and leaving learn mode) slot for slot; the project state's copy is
// PluginState's, refused files are BadInput's.
TEST_F (MidiControlTest, AWrittenMapReadsBackToTheSameSlots)
{
    control.assign (0, &param ("Early Size"), true);
    control.assign (64, &param ("FX"), true);
    control.assign (127, &param ("Output Volume"), true);

    const juce::TemporaryFile temp (MidiControl::fileExtension);
    ASSERT_TRUE (control.saveFile (temp.getFile()));
    EXPECT_EQ (dialogFolder (control.getLastFolder()), temp.getFile().getParentDirectory());

    // Before any map file, or once its folder is gone, the dialogs open among the user's documents.
    const auto documents = juce::File::getSpecialLocation (juce::File::userDocumentsDirectory);
    const auto start = documents.isDirectory() ? documents : juce::File::getSpecialLocation (juce::File::userHomeDirectory);
    EXPECT_EQ (dialogFolder (temp.getFile().getSiblingFile ("gone").getChildFile ("deeper")), start);

    MidiControl other { parameters, quorlane };
    other.assign (5, &param ("Late Size"), true);
    other.setLearnMode (true);
    ASSERT_TRUE (other.loadFile (temp.getFile()));
    EXPECT_EQ (dialogFolder (other.getLastFolder()), temp.getFile().getParentDirectory());
    EXPECT_FALSE (other.isLearnMode());
    for (int c = 0; c < MidiControl::numControllers; ++c)
        EXPECT_EQ (other.getParameterAt (c), control.getParameterAt (c)) << c;
}
