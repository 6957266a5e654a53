// Files written on one system open on the other: tests/written holds what the
// instance set up below writes (a preset, a bank, a controller map, the user
// settings and the project state). The test run of every system writes the
// same bytes and reads those files back into the same settings. After a
// deliberate change to a format, rewrite them with QUORLANE_REWRITE_DOCUMENTS=1.
#include "engine/Quorlane.h"
#include "tests/support/PluginBlocks.h"
#include "tests/support/ScopedConfigHome.h"

#include <gtest/gtest.h>

namespace
{
    const juce::File writtenFolder { QUORLANE_WRITTEN_DIR };

    // Names with accents, CJK characters and XML's special characters; values
    // whose decimal forms need every digit.
    const juce::String slotName = juce::CharPointer_UTF8 ("Salle d\xe2\x80\x99\xc3\xa9t\xc3\xa9 \xe5\xa4\xa7\xe5\x8e\x85 <&>");
    const juce::String groupName = juce::CharPointer_UTF8 ("Gr\xc3\xbcne R\xc3\xa4ume \"1\"");
    constexpr int editedSlot = 5, mappedController = 7;

    void setUp (Quorlane& plugin)
    {
        for (uint32_t i = 0; i < 20; ++i)
            plugin.getPluginParameter (i)->setNormalisedValue (0.013f + 0.0371f * (float) i + 1.0e-7f * (float) (i * i), ChangeOrigin::editor);

        plugin.storeSlot (editedSlot);
        plugin.renameSlot (editedSlot, slotName);
        ASSERT_TRUE (plugin.renameGroup (0, groupName));
        plugin.getMidiControl().assign (mappedController, plugin.getPluginParameter (3), true);
        plugin.setMixLock (true);
        plugin.setEditorZoom (150);
        plugin.setDefaultQuality (2);
    }

    juce::MemoryBlock bytesOf (const juce::File& file)
    {
        juce::MemoryBlock bytes;
        file.loadFileAsData (bytes);
        return bytes;
    }

    // The files keep six significant digits.
    template <size_t size>
    void expectClose (const std::array<float, size>& actual, const std::array<float, size>& expected, const char* what)
    {
        for (size_t i = 0; i < size; ++i)
            EXPECT_NEAR (actual[i], expected[i], 1.0e-6f) << what << " " << i;
    }
}

TEST (WrittenDocuments, AreTheSameBytesOnEverySystemAndReadBackIntoTheSameSettings)
{
    std::array<float, 20> values {};
    std::optional<PresetRecord> edited;
    {
        const ScopedConfigHome config;
        const auto scratch = config.getFolder().getChildFile ("written");
        ASSERT_TRUE (scratch.createDirectory());

        Quorlane plugin;
        setUp (plugin);
        values = liveValues (plugin);
        edited = plugin.getSlot (editedSlot);
        ASSERT_TRUE (plugin.savePresetFile (scratch.getChildFile ("preset.qlprs"), editedSlot));
        ASSERT_TRUE (plugin.saveBankFile (scratch.getChildFile ("bank.qlprsb")));
        ASSERT_TRUE (plugin.getMidiControl().saveFile (scratch.getChildFile ("map.qlmidi")));
        ASSERT_TRUE (config.settingsFile().copyFileTo (scratch.getChildFile ("Quorlane.ini")));
        juce::MemoryBlock state;
        plugin.getStateInformation (state);
        ASSERT_TRUE (scratch.getChildFile ("state.bin").replaceWithData (state.getData(), state.getSize()));

        const bool rewrite = juce::SystemStats::getEnvironmentVariable ("QUORLANE_REWRITE_DOCUMENTS", {}).isNotEmpty();

        for (const auto& written : scratch.findChildFiles (juce::File::findFiles, false))
        {
            const auto expected = writtenFolder.getChildFile (written.getFileName());

            if (rewrite)
                ASSERT_TRUE (written.copyFileTo (expected));
            else
                EXPECT_TRUE (bytesOf (written) == bytesOf (expected)) << written.getFileName() << " differs from tests/written";
        }
    }

    const ScopedConfigHome config;
    ASSERT_TRUE (config.settingsFile().getParentDirectory().createDirectory());
    ASSERT_TRUE (writtenFolder.getChildFile ("Quorlane.ini").copyFileTo (config.settingsFile()));
    Quorlane plugin;
    EXPECT_TRUE (plugin.isMixLocked());
    EXPECT_EQ (plugin.getEditorZoom(), 150);
    EXPECT_EQ (plugin.getDefaultQuality(), 2);

    ASSERT_TRUE (plugin.loadPresetFile (writtenFolder.getChildFile ("preset.qlprs"), 9));
    EXPECT_EQ (plugin.getSlot (9)->name, slotName);
    expectClose (plugin.getSlot (9)->values, edited->values, "preset file");

    ASSERT_TRUE (plugin.loadBankFile (writtenFolder.getChildFile ("bank.qlprsb")));
    EXPECT_EQ (plugin.getGroups()[0].name, groupName);
    EXPECT_EQ (plugin.getGroups().size(), 3u) << "the group of unused slots is read back, not added again";
    expectClose (plugin.getSlot (editedSlot)->values, edited->values, "bank file");

    ASSERT_TRUE (plugin.getMidiControl().loadFile (writtenFolder.getChildFile ("map.qlmidi")));
    EXPECT_EQ (plugin.getMidiControl().getParameterAt (mappedController), plugin.getPluginParameter (3));

    const auto state = bytesOf (writtenFolder.getChildFile ("state.bin"));
    plugin.getMidiControl().assign (mappedController, nullptr, true);
    plugin.setStateInformation (state.getData(), (int) state.getSize());
    expectClose (liveValues (plugin), values, "project state");
    EXPECT_EQ (plugin.getSlot (editedSlot)->name, slotName);
    EXPECT_EQ (plugin.getMidiControl().getParameterAt (mappedController), plugin.getPluginParameter (3));
}
