// The preset and bank elements as documents: what is accepted, and what a
// read leaves in place (what is written, and read back, is held byte for byte
// by WrittenDocuments).
#include "presets/Preset.h"
#include "presets/PresetBank.h"
#include "framework/ParameterManager.h"

#include <gtest/gtest.h>

namespace
{
    struct PresetFormat : testing::Test
    {
        PresetFormat() { parameters.load ("parameters.xml"); }

        juce::String presets (int count, const juce::String& prefix)
        {
            juce::String text;
            for (int i = 0; i < count; ++i)
                text << "<Preset application='Quorlane' name='" << prefix << i << "'><param name='FX' value='0.75'/></Preset>";
            return text;
        }

        ParameterManager parameters;
        PresetRecord defaults;
    };
}

// Foreign and malformed documents, and values out of range, are BadInput's; values a
// preset does not name keeping theirs, the renderer's --preset file's.
TEST_F (PresetFormat, APresetIsReadInAnyCaseAndOnlyWhatItNames)
{
    PresetRecord record;
    record.values.fill (0.25f);

    // Tags and attribute names in any case; the application in lower case.
    ASSERT_TRUE (Preset::read (*juce::parseXML ("<PRESET APPLICATION='quorlane' Name='Mixed'>"
                                                "<PARAM NAME='FX' VALUE='0.75'/><param name='Late Size'/>"
                                                "<param name='Quality' value='1'/><param name='No Such' value='1'/></PRESET>"),
                               record, parameters, "Quorlane"));
    EXPECT_EQ (record.name, "Mixed");
    EXPECT_EQ (record.values[18], 0.75f);
    EXPECT_EQ (record.values[6], 0.0f) << "a param without value reads as 0";
}

// Named groups filling the slots in turn are the renderer's --list-presets and
// FactoryBank's; here the names a bank leaves out and the slots it leaves over.
TEST_F (PresetFormat, GroupsFillTheSlotsInOrderAndTheRestIsNotUsed)
{
    PresetBankRecord bank;
    const auto text = "<presetbank><PresetGroup>" + presets (23, "a") + "<Other/></PresetGroup>"
                    + "<PresetGroup name='Wet'>" + presets (24, "b") + "</PresetGroup></presetbank>";
    ASSERT_TRUE (PresetBank::read (*juce::parseXML (text), bank, defaults, parameters, "Quorlane"));

    EXPECT_EQ (bank.name, "Preset Bank");
    ASSERT_EQ (bank.groups.size(), 3u);
    EXPECT_EQ (bank.groups[0].name, "group 1");
    EXPECT_EQ (bank.groups[2].name, "Not used");
    EXPECT_EQ (bank.groups[2].count, 81) << "an element that is no preset takes no slot";
    EXPECT_EQ (bank.slots[47].name, "Preset 48");
    EXPECT_EQ (bank.slots[47].values[18], 0.0f);
}
