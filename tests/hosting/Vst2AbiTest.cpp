// Loads the VST2 build the way a host does: dlopen or LoadLibrary, VSTPluginMain and the raw
// effect record, with the opcode numbers and record layout of the VST 2.4 ABI
// written out here rather than taken from any SDK header.

#include "../support/Environment.h"
#include "../support/NativeParentWindow.h"
#include "../support/ParameterNames.h"
#include "../support/SharedLibrary.h"
#include "../support/WindowManagerAtoms.h"
#include "framework/UserSettingsFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace
{
    struct Effect;
    using Dispatcher = intptr_t (*) (Effect*, int32_t, int32_t, intptr_t, void*, float);
    using ProcessFn = void (*) (Effect*, float**, float**, int32_t);

    struct Effect
    {
        int32_t magic;
        Dispatcher dispatcher;
        ProcessFn process;
        void (*setParameter) (Effect*, int32_t, float);
        float (*getParameter) (Effect*, int32_t);
        int32_t numPrograms, numParams, numInputs, numOutputs;
        int32_t flags;
        intptr_t reserved1, reserved2;
        int32_t initialDelay, realQualities, offQualities;
        float ioRatio;
        void *object, *user;
        int32_t uniqueID, version;
        ProcessFn processReplacing;
        void* processDoubleReplacing;
        char future[56];
    };

    static_assert (offsetof (Effect, flags) == 56 && offsetof (Effect, initialDelay) == 80
                   && offsetof (Effect, uniqueID) == 112 && offsetof (Effect, processReplacing) == 120);

    enum Opcode
    {
        effOpen = 0, effClose = 1, effGetProgram = 3, effGetProgramName = 5,
        effGetParamLabel = 6, effGetParamDisplay = 7, effGetParamName = 8, effSetSampleRate = 10,
        effSetBlockSize = 11, effMainsChanged = 12, effGetChunk = 23, effSetChunk = 24,
        effEditGetRect = 13, effEditOpen = 14, effEditClose = 15, effEditIdle = 19, effCanBeAutomated = 26,
        effGetProgramNameIndexed = 29, effGetEffectName = 45,
        effGetVendorString = 47, effGetProductString = 48, effGetVendorVersion = 49, effCanDo = 51,
        effGetTailSize = 52, effGetVstVersion = 58, effStartProcess = 71, effStopProcess = 72
    };

    struct EditorRect
    {
        int16_t top, left, bottom, right;
    };

    constexpr int32_t hasEditor = 1, canReplacing = 16, programChunks = 32;

    // The build's own plug-in, or an installed copy named by
    // QUORLANE_VST2_PLUGIN: the package tests load what each install put in place.
    std::string pluginPath()
    {
        const auto installed = environmentVariable ("QUORLANE_VST2_PLUGIN");
        return installed.empty() ? QUORLANE_VST2_PATH : installed;
    }

    intptr_t host (Effect*, int32_t opcode, int32_t, intptr_t, void*, float)
    {
        return opcode == 1 ? 2400 : 0; // audioMasterVersion
    }

    class Vst2Plugin
    {
    public:
        Vst2Plugin()
        {
            if (auto main = reinterpret_cast<Effect* (*) (Dispatcher)> (library.symbol ("VSTPluginMain")))
                effect = main (host);

            if (effect != nullptr)
                call (effOpen);
        }

        ~Vst2Plugin()
        {
            if (effect != nullptr)
                call (effClose);
        }

        intptr_t call (int32_t opcode, int32_t index = 0, intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f)
        {
            return effect->dispatcher (effect, opcode, index, value, ptr, opt);
        }

        float get (int32_t index) { return effect->getParameter (effect, index); }
        void set (int32_t index, float value) { effect->setParameter (effect, index, value); }

        // Filled first, so that an answer left unterminated shows.
        std::string text (int32_t opcode, int32_t index = 0)
        {
            std::string buffer (256, 'X');
            call (opcode, index, 0, buffer.data());
            return buffer.c_str();
        }

        std::string chunk()
        {
            void* data = nullptr;
            const auto size = call (effGetChunk, 0, 0, &data);
            return data != nullptr && size > 0 ? std::string (static_cast<const char*> (data), (size_t) size) : std::string();
        }

        void setChunk (const std::string& chunk) { call (effSetChunk, 0, (intptr_t) chunk.size(), const_cast<char*> (chunk.data())); }

        const SharedLibrary library { pluginPath().c_str() };
        Effect* effect = nullptr;
    };

    constexpr int32_t fourCC (const char (&c)[5])
    {
        return c[0] << 24 | c[1] << 16 | c[2] << 8 | c[3];
    }

    // The plug-in reads user settings when it starts (never the real user's)
    // and looks up the window manager's atoms.
    class HostProcess : public ::testing::Environment
    {
    public:
        void SetUp() override
        {
            createWindowManagerAtoms();
            path = std::filesystem::temp_directory_path() / ("quorlane-vst2-" + std::to_string (std::random_device()()));
            ASSERT_TRUE (std::filesystem::create_directory (path));
            setEnvironmentVariable (userSettingsFolderVariable, (const char*) path.u8string().c_str());
        }

        void TearDown() override { std::filesystem::remove_all (path); }

    private:
        std::filesystem::path path;
    };

    [[maybe_unused]] auto* const hostProcess = ::testing::AddGlobalTestEnvironment (new HostProcess);

    // A chunk is a magic number, the document's length, the document and a zero.
    std::string chunkOf (const std::string& document)
    {
        std::string chunk (8, '\0');
        const uint32_t magic = 0x21324356, length = (uint32_t) document.size();
        std::memcpy (chunk.data(), &magic, 4);
        std::memcpy (chunk.data() + 4, &length, 4);
        return chunk + document + '\0';
    }

    void replaceIn (std::string& text, const std::string& from, const std::string& to)
    {
        const auto at = text.find (from);
        ASSERT_NE (at, std::string::npos) << from;
        text.replace (at, from.size(), to);
    }
}

class Vst2Abi : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_NE (plugin.effect, nullptr) << plugin.library.error(); }
    Vst2Plugin plugin;
};

// Everything a host reads while it scans and loads the plug-in.
TEST_F (Vst2Abi, IdentifiesItselfToTheHost)
{
    EXPECT_EQ (plugin.library.symbol ("main"), nullptr) << "the entry point is the only export";
    EXPECT_EQ (plugin.library.symbol ("quorlaneJuceVSTPluginMain"), nullptr);

    const auto& e = *plugin.effect;
    EXPECT_EQ (e.magic, fourCC ("VstP"));
    EXPECT_EQ (e.uniqueID, fourCC ("Q7L2"));
    EXPECT_EQ (e.version, 0x10301);
    EXPECT_EQ (e.numPrograms, 0);
    EXPECT_EQ (e.numParams, 20);
    EXPECT_EQ (e.numInputs, 2);
    EXPECT_EQ (e.numOutputs, 2);
    EXPECT_EQ (e.flags, hasEditor | canReplacing | programChunks) << "neither a synth nor silent when stopped";
    EXPECT_EQ (e.initialDelay, 32);
    EXPECT_NE (e.processReplacing, nullptr);

    EXPECT_EQ (plugin.text (effGetEffectName), "Quorlane");
    EXPECT_EQ (plugin.text (effGetProductString), "Quorlane");
    EXPECT_EQ (plugin.text (effGetVendorString), "Orlo Digital Audio Works");
    EXPECT_EQ (plugin.call (effGetVendorVersion), 0x10301);
    EXPECT_EQ (plugin.call (effGetVstVersion), 2400);

    const struct { const char* query; intptr_t answer; } canDo[] = {
        { "receiveVstEvents", 1 }, { "receiveVstMidiEvent", 1 }, { "receiveVstMidiEvents", 1 },
        { "sendVstEvents", -1 }, { "sendVstMidiEvent", -1 }, { "sendVstMidiEvents", -1 },
        { "receiveVstTimeInfo", 1 }, { "conformsToWindowRules", 1 }, { "openCloseAnyThread", -1 },
        { "bypass", 0 }, { "offline", 0 }, { "hasCockosExtensions", 0 }, { "", 0 },
    };

    for (const auto& row : canDo)
        EXPECT_EQ (plugin.call (effCanDo, 0, 0, const_cast<char*> (row.query)), row.answer) << row.query;

    EXPECT_EQ (plugin.call (effGetProgram), 0);
    EXPECT_EQ (plugin.text (effGetProgramName), "");
    EXPECT_EQ (plugin.text (effGetProgramNameIndexed, 0), "");
}

TEST_F (Vst2Abi, ParametersByIndex)
{
    for (int i = 0; i < 20; ++i)
    {
        EXPECT_EQ (plugin.text (effGetParamName, i), quorlaneParameterNames[i]);
        EXPECT_FALSE (plugin.text (effGetParamDisplay, i).empty()) << i;
        EXPECT_EQ (plugin.call (effCanBeAutomated, i), 1) << i;
    }

    for (int i : { 20, 21, 22, 127, 5000, -1 })
    {
        EXPECT_EQ (plugin.text (effGetParamName, i), "") << i;
        EXPECT_EQ (plugin.text (effGetParamDisplay, i), "") << i;
        EXPECT_EQ (plugin.text (effGetParamLabel, i), "") << i;
    }

    const float earlySize = plugin.get (0);
    plugin.set (4, 0.25f);
    EXPECT_FLOAT_EQ (plugin.get (4), 0.25f);
    EXPECT_FLOAT_EQ (plugin.get (0), earlySize);
}

// Parameters set through the ABI, and a controller mapping, the quality and
// the presets given through the instance's own chunk edited as a host-side
// tool might, all carried to a fresh instance.
TEST_F (Vst2Abi, StateChunkCarriesParametersPresetsControllerMapAndQuality)
{
    plugin.set (9, 0.125f);
    plugin.set (16, 0.75f);
    const auto chunk = plugin.chunk();
    ASSERT_GT (chunk.size(), 9u);
    auto document = chunk.substr (8, chunk.size() - 9);
    ASSERT_NE (document.find ("<PluginState application=\"Quorlane\""), std::string::npos);
    replaceIn (document, "<MidiControlMap name=\"Quorlane\"/>",
               "<MidiControlMap name=\"Quorlane\"><assign param=\"FX\" CC=\"74\"/></MidiControlMap>");
    replaceIn (document, "<UniqueData quality=\"low\"/>", "<UniqueData quality=\"highest\"/>");
    replaceIn (document, "currentPreset=\"0\"", "currentPreset=\"5\"");
    replaceIn (document, "name=\"Cristal Cave [d/w]\"", "name=\"My Own Cave\"");
    const auto edited = chunkOf (document);
    plugin.setChunk (edited);

    const auto saved = plugin.chunk();
    EXPECT_EQ (saved, edited) << "the edits were taken and are written back unchanged";

    Vst2Plugin other;
    ASSERT_NE (other.effect, nullptr);
    EXPECT_NE (other.get (9), 0.125f);
    EXPECT_NE (other.chunk(), saved);
    other.setChunk (saved);
    EXPECT_FLOAT_EQ (other.get (9), 0.125f);
    EXPECT_FLOAT_EQ (other.get (16), 0.75f);
    EXPECT_EQ (other.chunk(), saved);
}

// Audio processed in place, with NaN, infinities, the largest float and
// subnormals from a broken upstream plug-in in the first half: every output
// stays finite and the reverb keeps sounding.
TEST_F (Vst2Abi, ProcessesInPlaceThroughNonFiniteInputAndAnswersTheTail)
{
    plugin.call (effSetSampleRate, 0, 0, nullptr, 48000.0f);
    plugin.call (effSetBlockSize, 0, 256);
    plugin.call (effMainsChanged, 0, 1);
    plugin.call (effStartProcess);

    const float hostile[] = { std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
                              -std::numeric_limits<float>::infinity(), 1e30f, std::numeric_limits<float>::max(),
                              std::numeric_limits<float>::denorm_min() };
    std::vector<float> left (256), right (256);
    float lastLevel = 0.0f;

    for (int block = 0; block < 120; ++block)
    {
        for (size_t i = 0; i < 256; ++i)
        {
            left[i] = right[i] = 0.25f * std::sin ((float) (block * 256 + (int) i) * 0.03f);

            if (block < 60 && i % 64 == 3)
                (i % 128 == 3 ? left : right)[i] = hostile[(size_t) block % std::size (hostile)];
        }

        float* channels[] = { left.data(), right.data() };
        plugin.effect->processReplacing (plugin.effect, channels, channels, 256);
        lastLevel = 0.0f;

        for (size_t i = 0; i < 256; ++i)
        {
            ASSERT_TRUE (std::isfinite (left[i]) && std::isfinite (right[i])) << "block " << block << " sample " << i;
            lastLevel = std::max ({ lastLevel, std::abs (left[i]), std::abs (right[i]) });
        }
    }

    EXPECT_GT (lastLevel, 0.01f) << "still sounding after the bad input";
    EXPECT_GE (plugin.call (effGetTailSize), 1) << "a reverb announces a tail";
    plugin.call (effStopProcess);
    plugin.call (effMainsChanged, 0, 0);
}

// The editor opens inside a window of the host's, at the skin's size, lives
// through the host's idle calls and an automated parameter, and closes again.
TEST_F (Vst2Abi, OpensTheEditorInAHostWindow)
{
    NativeParentWindow parent;
    ASSERT_NE (parent.handle(), nullptr) << "no window system";

    EditorRect* rect = nullptr;
    ASSERT_NE (plugin.call (effEditGetRect, 0, 0, &rect), 0);
    ASSERT_NE (rect, nullptr);
    EXPECT_EQ (rect->right - rect->left, 633);
    EXPECT_EQ (rect->bottom - rect->top, 207);

    ASSERT_NE (plugin.call (effEditOpen, 0, 0, parent.handle()), 0);

    for (int i = 0; i < 20; ++i)
    {
        if (i == 10)
            plugin.set (3, 0.5f);

        parent.dispatchEvents();
        plugin.call (effEditIdle);
    }

    plugin.call (effEditClose);
    parent.dispatchEvents();
    EXPECT_FLOAT_EQ (plugin.get (3), 0.5f);
}
