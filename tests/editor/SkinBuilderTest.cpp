#include "EditorTestSupport.h"

#include "editor/GFXAnimation.h"
#include "editor/GFXButton.h"
#include "editor/GFXKnob.h"

using namespace EditorTest;

// The kinds of control the plug-in's skin uses, in document order; anything
// else is skipped. A control without a size takes its frame's. (The committed
// skin's images, events and links are checked in SkinArt and through the
// accessibility tree, so the builder's fallbacks for broken ones never run.)
TEST (SkinBuilder, TheBackgroundSetsTheSizeAndEveryKindBuilds)
{
    Quorlane plugin;
    BasePluginEditor editor (plugin, skin (R"(
        <PluginEditor application="Quorlane">
          <!-- a comment is skipped -->
          <Knob name="Knob"><gfx resource="KnobMain.png" framesNum="61"/><pos left="10" top="20"/></Knob>
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
    EXPECT_EQ (find<GFXKnob> (editor, "Knob").getBounds(), juce::Rectangle<int> (10, 20, 35, 35));
    EXPECT_EQ (find<GFXAnimation> (editor, "Meter").getBounds().getHeight(), 89);
    EXPECT_EQ (find<GFXButton> (editor, "Button").getBounds().getHeight(), 43);

    editor.buildFromSkin (*skin (R"(<pluginEditor background="Background.png"><Knob name="K"/></pluginEditor>)"));
    EXPECT_EQ (editor.getControllers().size(), 5) << "a foreign root builds nothing";
}
