#include "EditorTestSupport.h"

#include "editor/GFXAnimation.h"
#include "editor/GFXButton.h"
#include "editor/GFXKnob.h"

using namespace EditorTest;

// The kinds of control the plug-in's skin uses, in document order; anything
// else is skipped. A control without a size takes its frame's. (The committed
// skin's images, events and links are checked in SkinArt and through the
// accessibility tree, so the builder's fallbacks for broken ones never run.)
// Ctrl-click fires a button's other event; learn toggles and takes the moved
// parameter.
TEST (SkinBuilder, EveryKindBuildsAndButtonsFireTheirEvents)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, juce::parseXML (R"(
        <PluginEditor application="Quorlane">
          <!-- a comment is skipped -->
          <Knob name="Knob"><gfx resource="KnobMain.png" framesNum="61"/><pos left="10" top="20"/>
            <links><link as="connectedTo" param="Late Size"/></links></Knob>
          <Animation name="Meter"><gfx resource="VUMeter.png" framesNum="12"/></Animation>
          <Button name="Next"><gfx resource="OptionsButton.png" framesNum="2"/><actions>
            <action type="onClick" event="Select next preset"/><action type="onClickWithCtrl" event="Select previous preset"/></actions></Button>
          <Button name="Learn"><actions><action type="onClick" event="Toggle Midi Learn"/></actions></Button>
          <Display name="Display"><size width="120" height="16"/></Display>
          <DisplayFloat name="Float"><size width="50" height="16"/></DisplayFloat>
          <Slider name="Unknown"/>
        </PluginEditor>)").get());

    EXPECT_EQ (editor.getLocalBounds(), juce::Rectangle<int> (633, 207)) << "the size of the default background";
    juce::StringArray names;
    for (auto* c : editor.getControllers())
        names.add (c->getComponent().getName());

    EXPECT_EQ (names.joinIntoString (","), "Knob,Meter,Next,Learn,Display,Float");
    EXPECT_EQ (find<GFXKnob> (editor, "Knob").getBounds(), juce::Rectangle<int> (10, 20, 35, 35));
    EXPECT_EQ (find<GFXAnimation> (editor, "Meter").getBounds().getHeight(), 89);
    EXPECT_EQ (find<GFXButton> (editor, "Next").getBounds().getHeight(), 43);

    plugin.selectPreset (5, true);
    click (find<GFXButton> (editor, "Next"), juce::ModifierKeys::ctrlModifier);
    EXPECT_EQ (plugin.getCurrentPresetIndex(), 4u);

    auto& midi = plugin.getMidiControl();
    auto& learn = find<GFXButton> (editor, "Learn");

    click (learn);
    ASSERT_TRUE (midi.isLearnMode());
    runMessageLoop();
    EXPECT_EQ (editor.getStatusBar().getShownText(), "Waiting for a controller or parameter movement...");

    find<GFXKnob> (editor, "Knob").setValue (0.8, juce::sendNotificationSync);
    EXPECT_TRUE (editor.getStatusBar().getShownText().startsWith ("Late Size: ")) << "the movement shows first";
    EXPECT_EQ (editor.describeMidiLearn(), "'Late Size' parameter is free. Waiting for a free controller now...");

    midi.handleMessage (juce::MidiMessage::controllerEvent (1, 30, 64));
    runMessageLoop();
    EXPECT_EQ (editor.describeMidiLearn(), "CC#30 is assigned to parameter 'Late Size'");

    midi.setLearnMode (false);
    midi.setLearnMode (true);
    midi.learnFromController (31);
    EXPECT_EQ (editor.describeMidiLearn(), "CC#31 is free. Waiting for a parameter now...");

    click (learn);
    EXPECT_FALSE (midi.isLearnMode());
    EXPECT_EQ (editor.describeMidiLearn(), "");

    editor.buildFromSkin (*juce::parseXML (R"(<pluginEditor background="Background.png"><Knob name="K"/></pluginEditor>)"));
    EXPECT_EQ (editor.getControllers().size(), 6) << "a foreign root builds nothing";
}
