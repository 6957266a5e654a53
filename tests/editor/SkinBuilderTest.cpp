#include "EditorTestSupport.h"

#include "editor/GFXAnimation.h"
#include "editor/GFXButton.h"
#include "editor/GFXKnob.h"
#include "editor/SkinValues.h"

using namespace EditorTest;

// The kinds of control the plug-in's skin uses; anything else is skipped.
TEST (SkinBuilder, TheBackgroundSetsTheSizeAndEveryKindBuilds)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (R"(
        <PluginEditor application="Quorlane">
          <!-- a comment is skipped -->
          <Knob name="Knob"><gfx resource="KnobMain.png" framesNum="61"/><pos left="10" top="20"/>
            <links><link as="connectedTo" param="FX"/></links></Knob>
          <Animation name="Meter"><gfx resource="VUMeter.png" framesNum="12"/></Animation>
          <Button name="Button"><gfx resource="OptionsButton.png" framesNum="2"/></Button>
          <Display name="Display"><size width="120" height="16"/></Display>
          <DisplayFloat name="Float"><size width="50" height="16"/></DisplayFloat>
          <Slider name="Unknown"/>
        </PluginEditor>)").get());

    EXPECT_EQ (editor.getLocalBounds(), juce::Rectangle<int> (633, 207)) << "the size of the default background";

    juce::StringArray names;
    for (auto* c : editor.getControllers())
        names.add (c->getComponent().getName());

    EXPECT_EQ (names.joinIntoString (","), "Knob,Meter,Button,Display,Float");
    auto& knob = find<GFXKnob> (editor, "Knob");
    EXPECT_EQ (knob.getBounds(), juce::Rectangle<int> (10, 20, 35, 35));
    EXPECT_EQ (find<GFXAnimation> (editor, "Meter").getBounds().getHeight(), 89);
    EXPECT_EQ (find<GFXButton> (editor, "Button").getBounds().getHeight(), 43);

    knob.setValue (1.0, juce::sendNotificationSync);
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
