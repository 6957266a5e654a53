#include "EditorTestSupport.h"

#include "editor/GFXAnimation.h"
#include "editor/GFXButton.h"
#include "editor/GFXDisplay.h"
#include "editor/GFXKnob.h"
#include "editor/GFXMultiStateButton.h"
#include "editor/GFXPanel.h"
#include "editor/GFXRocker.h"
#include "editor/GFXSwitch.h"
#include "editor/GFXToggleButton.h"
#include "editor/NumericDisplay.h"
#include "editor/PatternNumberDisplay.h"
#include "editor/SkinValues.h"

using namespace EditorTest;

TEST (SkinBuilder, TheBackgroundSetsTheSizeAndEveryKindBuilds)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (R"(
        <PluginEditor application="Quorlane">
          <!-- a comment is skipped -->
          <Knob name="Knob"><gfx resource="KnobMain.png" framesNum="61"/><pos left="10" top="20"/></Knob>
          <Switch name="Switch" style="Horizontal"><gfx resource="KnobEQ.png" framesNum="5"/></Switch>
          <Animation name="Meter"><gfx resource="VUMeter.png" framesNum="12"/></Animation>
          <Button name="Button"><gfx resource="OptionsButton.png" framesNum="2"/></Button>
          <ToggleButton name="Toggle" style="3D" radioGroupId="3"><gfx resource="OptionsButton.png" framesNum="2"/></ToggleButton>
          <MultiStateButton name="Multi" states="3"><gfx resource="OptionsButton.png" framesNum="2"/></MultiStateButton>
          <Display name="Display"><size width="120" height="16"/></Display>
          <DisplayFloat name="Float"><size width="50" height="16"/></DisplayFloat>
          <Rocker name="Rocker" type="vertical"><size width="20" height="40"/></Rocker>
          <Panel name="Panel" transparent="yes"><pos left="300" top="100"/><size width="200" height="100"/>
            <controls ofsX="5" ofsY="7">
              <Knob name="Inner"><links><link as="connectedTo" param="FX"/></links><pos left="1" top="2"/><size width="30" height="30"/></Knob>
              <NoteDisplay name="Note"/><MusicKeyboard name="Keys"/><PitchBender name="Bend"/>
              <ModWheel name="Wheel"/><ParameterModulator name="Mod"/>
            </controls>
          </Panel>
          <NumericDisplay name="Numeric" digitsNum="3"/><PatternNumberDisplay name="Pattern"/>
          <NoteDisplay name="OnlyInPanels"/><Slider name="Unknown"/>
        </PluginEditor>)").get());

    EXPECT_EQ (editor.getLocalBounds(), juce::Rectangle<int> (633, 207)) << "the size of the default background";

    juce::StringArray names;
    for (auto* c : editor.getControllers())
        names.add (c->getComponent().getName());

    EXPECT_EQ (names.joinIntoString (","),
               "Knob,Switch,Meter,Button,Toggle,Multi,Display,Float,Rocker,Panel,"
               "Inner,Note,Keys,Bend,Wheel,Mod,Numeric,Pattern");

    EXPECT_EQ (find<GFXKnob> (editor, "Knob").getBounds(), juce::Rectangle<int> (10, 20, 35, 35));
    EXPECT_EQ (find<GFXAnimation> (editor, "Meter").getBounds().getHeight(), 89);
    EXPECT_EQ (find<GFXButton> (editor, "Button").getBounds().getHeight(), 43);
    EXPECT_EQ (find<GFXSwitch> (editor, "Switch").getInterval(), 0.25);
    EXPECT_EQ (find<GFXToggleButton> (editor, "Toggle").getRadioGroupId(), 3);

    auto& panel = find<GFXPanel> (editor, "Panel");
    ASSERT_EQ (panel.getNumChildControls(), 6);
    auto& inner = dynamic_cast<GFXKnob&> (*panel.getChildControl (0));
    EXPECT_EQ (inner.getBounds(), juce::Rectangle<int> (6, 9, 30, 30));
    EXPECT_EQ (inner.getParentComponent(), &panel);

    // Nested controls report to the editor too.
    inner.setValue (1.0, juce::sendNotificationSync);
    EXPECT_EQ (plugin.getParameterManager().findParameter ("FX")->getNormalisedValue(), 1.0f);
    EXPECT_TRUE (editor.getStatusBar().getShownText().startsWith ("FX: "));
}

TEST (SkinBuilder, ForeignRootsLinksActionsAndStripsFailQuietly)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (R"(
        <PluginEditor background="Missing.png">
          <Knob name="Several"><gfx resource="NoSuchImage.png" framesNum="61"/><size width="40" height="30"/><pos left="5"/>
            <links><link as="connectedTo" param="Nonexistent"/><link as="connectedTo" param="Late Size"/>
              <link as="relatedTo" param="FX"/></links></Knob>
          <Knob name="Unbound"><links><link as="connectedTo" param="early size"/></links>
            <gfx resource="KNOBMAIN.Png" framesNum="0"/></Knob>
          <Button name="Actions"><actions><action type="onClick" event="Not an event"/>
            <action type="onClickWithCtrl" event="About"/><action type="" event="Options"/></actions></Button>
        </PluginEditor>)").get());

    editor.buildFromSkin (*skin (R"(<pluginEditor background="Background.png"><Knob name="K"/></pluginEditor>)"));
    EXPECT_EQ (editor.getControllers().size(), 3) << "a foreign root builds nothing";
    EXPECT_EQ (editor.getWidth(), 400) << "neither a missing background nor a foreign root changes the size";

    auto& several = find<GFXKnob> (editor, "Several");
    EXPECT_EQ (several.getParameter(), plugin.getParameterManager().findParameter ("Late Size"));
    EXPECT_EQ (several.getBounds(), juce::Rectangle<int> (5, 0, 40, 30)) << "a missing image leaves the skin's size";

    // framesNum 0 reads as one frame covering the whole (case-insensitively found) image.
    auto& unbound = find<GFXKnob> (editor, "Unbound");
    EXPECT_EQ (unbound.getParameter(), nullptr) << "parameter names are exact";
    EXPECT_EQ (unbound.getNumFrames(), 1);
    EXPECT_EQ (unbound.getHeight(), 2135);
    EXPECT_EQ (unbound.getShownFrame(), 0);

    auto& button = find<GFXButton> (editor, "Actions");
    RecordingListener listener;
    static_cast<GUIController&> (button).addListener (&listener);
    button.triggerClick();
    pumpMessages();
    EXPECT_TRUE (listener.events.isEmpty()) << "the unknown event and the untyped action are ignored";
}

TEST (SkinBuilder, ValuesAndResourcesFollowTheFormat)
{
    const auto e = skin (R"(<e n="42px" bad="px" c="FFBEF6FF" d="ff232224"/>)");
    for (const auto& [attribute, value] : { std::pair { "n", 42 }, { "bad", 0 }, { "missing", 9 } })
        EXPECT_EQ (SkinValues::readInt (*e, attribute, 9), value) << attribute;

    EXPECT_EQ (SkinValues::readColour (*e, "c", {}), juce::Colour (0xbe, 0xf6, 0xff));
    EXPECT_EQ (SkinValues::readColour (*e, "d", {}), juce::Colour (0xff232224));
    EXPECT_FALSE (SkinValues::loadImage ("OptionsButton").isValid()) << "file names need their extension";
}

TEST (EventRegistry, HoldsTheFixedEventsAfterAnyMergedOnes)
{
    EventRegistry registry;
    registry.merge (*skin (R"(<EventsMap><event name="Randomise"/><event name="About"/><event/></EventsMap>)"));
    registry.merge (*skin (R"(<Events><event name="Ignored"/></Events>)"));
    registry.registerFixedEvents();

    // A fixed event keeps its id over a merged one of the same name; names are exact.
    constexpr int unknown = EventRegistry::unknownEvent;
    for (const auto& [name, id] : { std::pair { "Randomise", EventRegistry::firstCustomId }, { "Ignored", unknown }, { "", unknown },
                                    { "About", 1001 }, { "Options", 1000 }, { "Browse presets", 1004 }, { "Save Preset As", 1006 },
                                    { "Toggle Midi Learn", 1010 }, { "toggle midi learn", unknown } })
        EXPECT_EQ (registry.getId (name), id) << name;

    EXPECT_EQ (Quorlane().getEventRegistry().size(), 11) << "the plug-in has only the fixed events";
}
