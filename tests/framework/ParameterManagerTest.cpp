#include "framework/EnumParameter.h"
#include "framework/FloatParameter.h"
#include "framework/IntParameter.h"
#include "framework/ParameterManager.h"
#include "framework/Resources.h"
#include "tests/support/ParameterNames.h"

#include <gtest/gtest.h>

namespace
{
    juce::String document (const juce::String& params, const juce::String& root = "PluginParameters")
    {
        return "<?xml version=\"1.0\"?><" + root + " application='Quorlane'>" + params + "</" + root + ">";
    }

    struct AddedRecorder : ParameterManager::Listener
    {
        void parameterAdded (Parameter& p) override { added.add ((int) p.getIndex()); }
        juce::Array<int> added;
    };
}

TEST (Resources, FindsDataByNameAndTypeWhateverTheCase)
{
    const auto data = Resources::getData ("parameters.xml");
    ASSERT_FALSE (data.isEmpty());
    EXPECT_EQ (Resources::getData ("PARAMETERS.XML"), data);
    EXPECT_EQ (Resources::getData ("Parameters.Xml"), data);
    EXPECT_TRUE (Resources::getText ("parameters.xml").contains ("PluginParameters"));

    EXPECT_TRUE (Resources::getData ("parameters").isEmpty()) << "no type, no data";
    EXPECT_TRUE (Resources::getData ("parameters.png").isEmpty());
    EXPECT_TRUE (Resources::getData ("nothing.xml").isEmpty());
    EXPECT_TRUE (Resources::getText ("").isEmpty());
}

TEST (ParameterDescription, DeclaresTheTwentyTwoParameters)
{
    ParameterManager manager;
    manager.load ("parameters.xml");
    ASSERT_EQ (manager.getNumParameters(), 22);

    const float defaults[] = { 0.5f, 0.5f, 1.0f, 0.5f, 0.5f, 0.5f, 0.5f, 0.5f, 0.5f, 1.0f, 0.0f,
                               0.5f, 0.5f, 0.5f, 0.5f, 0.2f, 0.0f, 0.0f, 0.5f, 0.5f, 0.0f, 0.0f };

    for (uint32_t i = 0; i < 22; ++i)
    {
        const juce::String name = i < 20 ? quorlaneParameterNames[i] : i == 20 ? "Quality" : "Decay Time";
        auto* p = dynamic_cast<FloatParameter*> (manager.getParameter (i));
        ASSERT_NE (p, nullptr) << i;
        EXPECT_EQ (p->getName(), name);
        EXPECT_EQ (p->getValue(), defaults[i]) << name;
        EXPECT_EQ (p->isAutomatable(), i < 20) << name;
        EXPECT_EQ (p->getMaximum(), i == 21 ? 1000.0f : 1.0f);
        EXPECT_EQ (manager.findParameter (name), p);
    }

    EXPECT_EQ (manager.findParameter ("early size"), nullptr) << "names match exactly";
}

TEST (ParameterDescription, UnreadableDocumentsAddNothing)
{
    for (const auto& text : { juce::String(), juce::String ("not xml at all <"),
                              document ("<param index='0' name='A'/>", "PluginState"),
                              document ("<param index='0' name='A'/>", "pluginparameters") })
    {
        AddedRecorder recorder;
        ParameterManager manager (&recorder);
        manager.loadFromText (text);
        EXPECT_EQ (manager.getNumParameters(), 0) << text;
        EXPECT_TRUE (recorder.added.isEmpty());
    }

    ParameterManager missing;
    missing.load ("no-such-description.xml");
    EXPECT_EQ (missing.getNumParameters(), 0);
}

TEST (ParameterDescription, SkipsUnusableElementsAndReadsTheRest)
{
    AddedRecorder recorder;
    ParameterManager manager (&recorder);
    manager.loadFromText (document (
        "<param name='no index'/>"
        "<param index='-1' name='minus one'/>"
        "<param index='1'/>"
        "<param index='2' name=''/>"
        "<param index='3' name='Mystery' type='complex'/>"
        "<other index='4' name='Not a param'/>"
        "<!-- a comment -->"
        "<param index='5' name=\"Kept\" value='0.25'/>"
        "<group><param index='6' name='Nested'/></group>"));

    EXPECT_EQ (manager.getNumParameters(), 1);
    EXPECT_EQ (recorder.added, juce::Array<int> { 5 });
    ASSERT_NE (manager.getParameter (5), nullptr);
    EXPECT_EQ (manager.getParameter (5)->getValue(), 0.25f);
}

TEST (ParameterDescription, EachKindReadsItsOwnAttributes)
{
    ParameterManager manager;
    manager.loadFromText (document (
        "<param index='0' name='Untyped' value='1.5'/>"
        "<param index='1' name='Ranged' min='-10' max='10' value='-20'/>"
        "<param index='2' name='Low note' type='note' value='-3'/>"
        "<param index='3' name='High note' type='note' value='200'/>"
        "<param index='4' name='Mode' type='enum' enum='a;b;c' value='c'/>"
        "<param index='5' name='Count' type='int' min='1' max='8' value='5' auto='true'/>"
        "<param index='6' name='Title' type='string' value='Hall'/>"
        "<param index='7' name='Switch' type='bool' value='true'/>"
        "<param index='8' name='Lock' type='state' value='false'/>"
        "<param index='9' name='Blank'/>"));

    ASSERT_EQ (manager.getNumParameters(), 10);
    EXPECT_EQ (manager.getParameter (0)->getValue(), 1.0f) << "a default above max is clamped";
    EXPECT_EQ (manager.getParameter (1)->getValue(), -10.0f);
    EXPECT_EQ (manager.getParameter (2)->getIntValue(), 0);
    EXPECT_EQ (manager.getParameter (3)->getIntValue(), 127);

    auto* mode = dynamic_cast<EnumParameter*> (manager.getParameter (4));
    ASSERT_NE (mode, nullptr);
    EXPECT_EQ (mode->getItems().size(), 3);
    EXPECT_EQ (mode->getText(), "c");

    EXPECT_EQ (manager.getParameter (5)->getIntValue(), 5);
    EXPECT_TRUE (manager.getParameter (5)->isAutomatable());
    EXPECT_FALSE (manager.getParameter (4)->isAutomatable());
    EXPECT_EQ (manager.getParameter (6)->getText(), "Hall");
    EXPECT_TRUE (manager.getParameter (7)->getBoolValue());
    EXPECT_FALSE (manager.getParameter (8)->getBoolValue());
    EXPECT_EQ (manager.getParameter (9)->getValue(), 0.0f) << "no value reads as 0";
}

TEST (ParameterDescription, ALaterElementWithTheSameIndexReplacesTheEarlier)
{
    ParameterManager manager;
    manager.loadFromText (document ("<param index='0' name='First'/><param index='0' name='Second'/>"));
    EXPECT_EQ (manager.getNumParameters(), 1);
    EXPECT_EQ (manager.getParameter (0)->getName(), "Second");
    EXPECT_EQ (manager.findParameter ("First"), nullptr);
}
