#include "editor/DialogFolder.h"
#include "framework/MidiControl.h"

#include <gtest/gtest.h>

#include <thread>

namespace
{
    struct RecordingListener : MidiControl::Listener
    {
        explicit RecordingListener (juce::StringArray& log, juce::String id) : calls (log), name (std::move (id)) {}

        void midiLearnModeChanged (bool isOn) override { calls.add (name + (isOn ? " on" : " off")); }
        void midiMapChanged() override { calls.add (name + " map"); }
        void midiLearnChoiceChanged() override { calls.add (name + " learn"); }
        void midiControllerMoved (Parameter& p) override { calls.add (name + " moved " + p.getName()); }

        juce::StringArray& calls;
        juce::String name;
    };

    class MidiControlTest : public ::testing::Test
    {
    protected:
        MidiControlTest() { parameters.load ("parameters.xml"); }

        Parameter& param (const char* name) { return *parameters.findParameter (name); }

        void move (int controller, int value)
        {
            control.handleMessage (juce::MidiMessage::controllerEvent (3, controller, value));
        }

        ParameterManager parameters;
        MidiControl control { parameters, [] { return juce::String ("Quorlane"); } };
    };
}

TEST_F (MidiControlTest, ControllerValuesScaleToTheWholeRangeOnAnyChannel)
{
    control.assign (7, &param ("FX"), true);

    move (7, 127);
    EXPECT_EQ (param ("FX").getNormalisedValue(), 1.0f);
    move (7, 0);
    EXPECT_EQ (param ("FX").getNormalisedValue(), 0.0f);
    move (7, 64);
    EXPECT_NEAR (param ("FX").getNormalisedValue(), 0.503937f, 1e-6f);

    control.handleMessage (juce::MidiMessage::controllerEvent (16, 7, 127));
    EXPECT_EQ (param ("FX").getNormalisedValue(), 1.0f);

    const auto before = param ("Early Size").getNormalisedValue();
    move (8, 0);
    control.handleMessage (juce::MidiMessage::noteOn (1, 7, (juce::uint8) 0));
    EXPECT_EQ (param ("Early Size").getNormalisedValue(), before) << "unbound controllers and notes move nothing";
    EXPECT_EQ (param ("FX").getNormalisedValue(), 1.0f);
}

TEST_F (MidiControlTest, AParameterOccupiesOneSlot)
{
    control.assign (7, &param ("FX"), true);
    control.assign (20, &param ("FX"), true);

    EXPECT_EQ (control.getParameterAt (7), nullptr);
    EXPECT_EQ (control.getParameterAt (20), &param ("FX"));
    EXPECT_EQ (control.getControllerOf (&param ("FX")), 20);
    EXPECT_EQ (control.getMappedCount(), 1);

    control.assign (20, &param ("Late Size"), true);
    EXPECT_EQ (control.getControllerOf (&param ("FX")), -1);
    EXPECT_EQ (control.getMappedCount(), 1);

    control.remove (20);
    control.assign (128, &param ("FX"), true);
    control.assign (-1, &param ("FX"), true);
    EXPECT_EQ (control.getMappedCount(), 0);
}

TEST_F (MidiControlTest, LearningBindsATouchedParameterToAnEmptyController)
{
    control.setLearnMode (true);
    control.learnFromParameter (param ("FX"));
    move (30, 10);

    EXPECT_EQ (control.getParameterAt (30), &param ("FX"));
    EXPECT_NEAR (param ("FX").getNormalisedValue(), 10.0f / 127.0f, 1e-6f) << "the learning move already counts";

    // The other order: a controller moved first keeps its place.
    control.setLearnMode (false);
    control.setLearnMode (true);
    move (40, 0);
    control.learnFromParameter (param ("Late Size"));
    EXPECT_EQ (control.getParameterAt (40), &param ("Late Size"));
    EXPECT_EQ (control.getMappedCount(), 2);
}

TEST_F (MidiControlTest, LearningNeverTakesOverAnOccupiedController)
{
    control.assign (30, &param ("Late Size"), true);
    control.setLearnMode (true);
    control.learnFromParameter (param ("FX"));
    move (30, 100);

    EXPECT_EQ (control.getParameterAt (30), &param ("Late Size"));
    EXPECT_EQ (control.getControllerOf (&param ("FX")), -1);
    EXPECT_EQ (control.getLearnParameter(), &param ("FX")) << "the touched parameter stays chosen";
    EXPECT_EQ (control.getLearnController(), 30);

    // Once the user frees the controller, the next move binds.
    control.remove (30);
    control.learnFromParameter (param ("FX"));
    move (30, 5);
    EXPECT_EQ (control.getParameterAt (30), &param ("FX"));
}

TEST_F (MidiControlTest, SwitchingLearnModeOffAndOnClearsAHalfChoice)
{
    control.setLearnMode (true);
    control.learnFromParameter (param ("FX"));
    control.setLearnMode (false);
    control.setLearnMode (true);
    EXPECT_EQ (control.getLearnParameter(), nullptr);
    EXPECT_EQ (control.getLearnController(), -1);

    move (30, 10);
    EXPECT_EQ (control.getMappedCount(), 0) << "the earlier touch was forgotten";

    control.setLearnMode (false);
    move (31, 10);
    control.learnFromParameter (param ("FX"));
    EXPECT_EQ (control.getMappedCount(), 0) << "nothing is learnt outside learn mode";
}

TEST_F (MidiControlTest, TogglingReadsAndFlipsInOneStepSoNoToggleIsLost)
{
    control.setLearnMode (true);
    control.learnFromParameter (param ("FX"));
    EXPECT_FALSE (control.toggleLearnMode());
    EXPECT_TRUE (control.toggleLearnMode());
    EXPECT_EQ (control.getLearnParameter(), nullptr) << "a toggle clears a half choice like a switch does";

    struct Counter : MidiControl::Listener
    {
        void midiLearnModeChanged (bool) override { ++switches; }
        std::atomic<int> switches { 0 };
    } counter;

    control.addListener (&counter);
    constexpr int togglesPerThread = 20000;
    const auto toggle = [this] { for (int i = 0; i < togglesPerThread; ++i) control.toggleLearnMode(); };
    std::thread first (toggle), second (toggle);
    first.join();
    second.join();
    control.removeListener (&counter);

    EXPECT_EQ (counter.switches.load(), 2 * togglesPerThread) << "every toggle switched the mode once";
    EXPECT_TRUE (control.isLearnMode()) << "an even number of toggles from on ends on";
}

TEST_F (MidiControlTest, ListenersHearLearnModeAtOnceAndTheRestOnTheMessageThread)
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
    move (30, 127);
    EXPECT_TRUE (calls.isEmpty()) << "nothing but the mode switch is reported synchronously";

    juce::MessageManager::getInstance()->runDispatchLoopUntil (50);
    EXPECT_EQ (calls, juce::StringArray ({ "second map", "second learn", "second moved FX",
                                           "first map", "first learn", "first moved FX" }));
    control.removeListener (&first);
    control.removeListener (&second);
}

// A map written for the project state, or saved as a file, reads back into
// another control (clearing what it held and leaving learn mode) slot for slot.
TEST_F (MidiControlTest, AWrittenMapReadsBackToTheSameSlotsAndFilesBelongToThePlugin)
{
    control.assign (0, &param ("Early Size"), true);
    control.assign (64, &param ("FX"), true);
    control.assign (127, &param ("Output Volume"), true);
    const auto written = control.writeMap ("live set");
    EXPECT_EQ (written->getTagName(), "MidiControlMap");
    EXPECT_EQ (written->getStringAttribute ("name"), "live set");

    const juce::TemporaryFile temp (MidiControl::fileExtension);
    ASSERT_TRUE (control.saveFile (temp.getFile()));

    MidiControl fromMap { parameters, [] { return juce::String ("Quorlane"); } };
    MidiControl fromFile { parameters, [] { return juce::String ("Quorlane"); } };

    for (auto* other : { &fromMap, &fromFile })
    {
        other->assign (5, &param ("Late Size"), true);
        other->setLearnMode (true);
    }

    fromMap.readMap (*written);
    ASSERT_TRUE (fromFile.loadFile (temp.getFile()));

    EXPECT_EQ (dialogFolder (fromFile.getLastFolder()), temp.getFile().getParentDirectory());
    EXPECT_EQ (dialogFolder (control.getLastFolder()), temp.getFile().getParentDirectory());

    for (auto* other : { &fromMap, &fromFile })
    {
        EXPECT_FALSE (other->isLearnMode());
        for (int c = 0; c < MidiControl::numControllers; ++c)
            EXPECT_EQ (other->getParameterAt (c), control.getParameterAt (c)) << c;
    }

    MidiControl foreign { parameters, [] { return juce::String ("Elsewhere"); } };
    foreign.assign (1, &param ("FX"), true);
    EXPECT_FALSE (foreign.loadFile (temp.getFile()));
    EXPECT_FALSE (foreign.loadFile (temp.getFile().getSiblingFile ("missing.qlmidi")));
    EXPECT_EQ (foreign.getParameterAt (1), &param ("FX")) << "a refused file changes nothing";

    // Before any map file, or once its folder is gone, the dialogs open among the user's documents.
    const auto documents = juce::File::getSpecialLocation (juce::File::userDocumentsDirectory);
    const auto start = documents.isDirectory() ? documents : juce::File::getSpecialLocation (juce::File::userHomeDirectory);
    EXPECT_EQ (dialogFolder (foreign.getLastFolder()), start);
    EXPECT_EQ (dialogFolder (temp.getFile().getSiblingFile ("gone").getChildFile ("deeper")), start);
}

TEST_F (MidiControlTest, ReadingSkipsWhatCannotBeBound)
{
    const auto map = juce::parseXML (R"(<MidiCCMap>
        <assign param="Quality" CC="1"/>
        <assign param="FX" CC="128"/>
        <assign param="FX" CC="-3"/>
        <assign param="FX" CC="4294967303"/>
        <assign param="FX" CC="7 beats"/>
        <assign param="No Such Thing" CC="2"/>
        <Assign param="Late Size" CC="3"/>
        <assign param="Early Size" CC="9"/>
        <assign param="Early Size" CC="10"/>
    </MidiCCMap>)");

    control.readMap (*map);

    EXPECT_EQ (control.getMappedCount(), 1);
    EXPECT_EQ (control.getParameterAt (10), &param ("Early Size")) << "a later assignment of the same parameter wins";
}
