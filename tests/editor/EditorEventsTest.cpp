#include "EditorTestSupport.h"

#include "editor/GFXButton.h"
#include "editor/GFXKnob.h"

using namespace EditorTest;

namespace
{
    const char* const buttonSkin = R"(
        <PluginEditor>
          <Knob name="Knob"><links><link as="connectedTo" param="Late Size"/></links><size width="30" height="30"/></Knob>
          <Button name="Next"><actions><action type="onClick" event="Select next preset"/>
            <action type="onClickWithCtrl" event="Select previous preset"/></actions></Button>
          <Button name="Learn"><actions><action type="onClick" event="Toggle Midi Learn"/></actions></Button>
        </PluginEditor>)";
}

// Ctrl-click fires a button's other event; learn toggles and takes the moved parameter.
TEST (EditorEvents, CtrlClickFiresTheOtherEventAndLearnTakesTheMovedParameter)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (buttonSkin).get());
    plugin.selectPreset (5, true);
    click (find<GFXButton> (editor, "Next"), juce::ModifierKeys::ctrlModifier);
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 4u);

    auto& midi = plugin.getMidiControl();
    auto& learn = find<GFXButton> (editor, "Learn");

    click (learn);
    ASSERT_TRUE (midi.isLearnMode());
    pumpMessages();
    EXPECT_EQ (editor.getStatusBar().getShownText(), "Waiting for a controller or parameter movement...");

    find<GFXKnob> (editor, "Knob").setValue (0.8, juce::sendNotificationSync);
    EXPECT_EQ (midi.getLearnParameter(), plugin.getParameterManager().findParameter ("Late Size"));
    EXPECT_TRUE (editor.getStatusBar().getShownText().startsWith ("Late Size: ")) << "the movement shows first";
    EXPECT_EQ (editor.describeMidiLearn(), "'Late Size' parameter is free. Waiting for a free controller now...");

    midi.handleMessage (juce::MidiMessage::controllerEvent (1, 30, 64));
    pumpMessages();
    EXPECT_EQ (editor.describeMidiLearn(), "CC#30 is assigned to parameter 'Late Size'");
    EXPECT_EQ (midi.getControllerOf (plugin.getParameterManager().findParameter ("Late Size")), 30);

    midi.setLearnMode (false);
    midi.setLearnMode (true);
    midi.learnFromController (31);
    EXPECT_EQ (editor.describeMidiLearn(), "CC#31 is free. Waiting for a parameter now...");

    click (learn);
    EXPECT_FALSE (midi.isLearnMode());
    EXPECT_EQ (editor.describeMidiLearn(), "");
}
