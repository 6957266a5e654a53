// Loads the VST2 build the way a host does: dlopen or LoadLibrary, VSTPluginMain and the raw
// effect record, with the opcode numbers and record layout of the VST 2.4 ABI
// written out here rather than taken from any SDK header.

#include "../support/EditorFollowWatch.h"
#include "../support/Environment.h"
#include "../support/HostProcess.h"
#include "../support/NativeParentWindow.h"
#include "../support/Vst2Plugin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <mutex>
#include <regex>
#include <set>
#include <thread>
#include <utility>
#include <vector>

namespace
{
    using namespace Vst2;

    constexpr int32_t hasEditor = 1, canReplacing = 16, programChunks = 32;

    struct Vst2Plugin : Plugin { Vst2Plugin() : Plugin (pluginLocation ("QUORLANE_VST2_PLUGIN", QUORLANE_VST2_PATH)) {} };

    constexpr int32_t fourCC (const char (&c)[5]) { return c[0] << 24 | c[1] << 16 | c[2] << 8 | c[3]; }

    [[maybe_unused]] auto* const hostProcess = ::testing::AddGlobalTestEnvironment (new HostProcess);

    // A chunk is a magic number, the document's length, the document and a zero.
    std::string chunkOf (const std::string& document)
    {
        const uint32_t header[] = { 0x21324356, (uint32_t) document.size() };
        return std::string (reinterpret_cast<const char*> (header), sizeof (header)) + document + '\0';
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

    // The record: its kind and identity, the version, no programs of the
    // host's, twenty parameters, stereo, an editor, in-place processing and
    // chunks (neither a synth nor silent when stopped), and the latency.
    const auto& e = *plugin.effect;
    EXPECT_NE (e.processReplacing, nullptr);
    EXPECT_EQ ((std::vector<int32_t> { e.magic, e.uniqueID, e.version, e.numPrograms, e.numParams, e.numInputs, e.numOutputs, e.flags, e.initialDelay }),
               (std::vector<int32_t> { fourCC ("VstP"), fourCC ("Q7L2"), 0x10301, 0, 20, 2, 2, hasEditor | canReplacing | programChunks, 32 }));
    EXPECT_EQ ((std::vector<std::string> { plugin.text (effGetEffectName), plugin.text (effGetProductString), plugin.text (effGetVendorString),
                                           plugin.text (effGetProgramName), plugin.text (effGetProgramNameIndexed, 0) }),
               (std::vector<std::string> { "Quorlane", "Quorlane", "Orlo Digital Audio Works", "", "" }));
    EXPECT_EQ ((std::vector<intptr_t> { plugin.call (effGetVendorVersion), plugin.call (effGetVstVersion), plugin.call (effGetProgram) }),
               (std::vector<intptr_t> { 0x10301, 2400, 0 }));

    // What hosts ask before they send MIDI and time, or expect MIDI back.
    const struct { const char* query; intptr_t answer; } canDo[] = {
        { "receiveVstEvents", 1 }, { "receiveVstMidiEvent", 1 }, { "receiveVstTimeInfo", 1 }, { "sendVstMidiEvent", -1 },
        { "bypass", 0 }, { "", 0 },
    };

    for (const auto& row : canDo)
        EXPECT_EQ (plugin.call (effCanDo, 0, 0, const_cast<char*> (row.query)), row.answer) << row.query;

    plugin.start (256);
    EXPECT_GE (plugin.call (effGetTailSize), 1) << "a reverb announces a tail";
    plugin.stop();

    // The twenty's names and texts are the CLAP build's (ClapHostTest), and
    // are automatable (the hosted formats); beyond the twenty, nothing.
    for (int i : { -1, 20, 5000 })
        for (const auto opcode : { effGetParamName, effGetParamDisplay, effGetParamLabel })
            EXPECT_EQ (plugin.text (opcode, i), "") << i << " " << opcode;
}

// The program chunk, which hosts keep as their single-preset files, is the
// current preset alone. Set on another instance, it replaces that instance's
// current slot and what it plays, and nothing else.
TEST_F (Vst2Abi, ProgramChunkIsTheCurrentPresetAlone)
{
    const auto documentOf = [] (const std::string& chunk) { return chunk.size() > 9 ? chunk.substr (8, chunk.size() - 9) : std::string(); };
    // The state without the live values, the current (first) slot and the
    // values that follow from them (the decay time display).
    const auto restOf = [&] (const std::string& chunk)
    {
        auto text = documentOf (chunk);

        for (const char* part : { "<ParametersState>.*?</ParametersState>", "<Preset .*?</Preset>", "<NotPresetableParams>.*?</NotPresetableParams>" })
            text = std::regex_replace (text, std::regex (part), "", std::regex_constants::format_first_only);

        return text;
    };

    auto preset = documentOf (plugin.chunk (true));
    EXPECT_LT (preset.size(), 4096u);
    EXPECT_EQ (preset.find ("PluginState"), std::string::npos);
    ASSERT_NE (preset.find ("<Preset application=\"Quorlane\" name=\""), std::string::npos) << preset;
    preset = std::regex_replace (preset, std::regex ("name=\"Late Size\" value=\"[^\"]*\""), "name=\"Late Size\" value=\"0.125\"");
    preset = std::regex_replace (preset, std::regex ("<Preset application=\"Quorlane\" name=\"[^\"]*\""),
                                 "<Preset application=\"Quorlane\" name=\"From The Host\"");

    Vst2Plugin other;
    ASSERT_NE (other.effect, nullptr);
    const auto before = other.chunk();
    other.setChunk (chunkOf (preset), true);

    EXPECT_FLOAT_EQ (other.get (6), 0.125f) << "the preset is applied";
    const auto after = other.chunk();
    EXPECT_NE (documentOf (after).find ("name=\"From The Host\""), std::string::npos) << "into the current slot";
    EXPECT_EQ (restOf (after), restOf (before)) << "the other slots, the map and the quality are untouched";
    EXPECT_EQ (documentOf (other.chunk (true)), preset);

    other.setChunk (chunkOf ("<PluginState application=\"Quorlane\"/>"), true);
    EXPECT_EQ (other.chunk(), after) << "a whole state is no program chunk";
}

// As a DAW runs the plug-in: the editor open in a window of the host's, at
// the skin's size, with the host's idle calls, automation of "Late Size"
// played on an audio thread in real time; with automatic storing on, the
// value is stored into the current preset.
TEST (Vst2Hosting, AutomationOnTheAudioThreadIsShownAndStored)
{
    const ScopedSettingsFile settings (HostProcess::settingsFolder(), "<UserSettings application=\"Quorlane\"><PresetSettings storing=\"automatic\"/></UserSettings>");
    Vst2Plugin plugin;
    ASSERT_NE (plugin.effect, nullptr);
    NativeParentWindow parent;
    ASSERT_NE (parent.handle(), nullptr) << "no window system";

    plugin.start (256);

    const int16_t* rect = nullptr; // top, left, bottom, right
    ASSERT_NE (plugin.call (effEditGetRect, 0, 0, &rect), 0);
    ASSERT_NE (rect, nullptr);
    EXPECT_EQ (std::pair (rect[3] - rect[1], rect[2] - rect[0]), std::pair (633, 207));
    ASSERT_NE (plugin.call (effEditOpen, 0, 0, parent.handle()), 0);

    // The host's idle calls, every 10 ms.
    const auto idle = [&]
    {
        parent.dispatchEvents();
        plugin.call (effEditIdle);
        std::this_thread::sleep_for (std::chrono::milliseconds (10));
    };

    for (int i = 0; i < 30; ++i)
        idle();

    std::vector<float> left (256), right (256);
    expectEditorFollowsAndStores (parent.handle(), [&]
    {
        std::fill (left.begin(), left.end(), 0.0f);
        std::fill (right.begin(), right.end(), 0.0f);
        plugin.process (left, right);
    },
    [&] { plugin.set (6, 0.9f); }, idle, [&] { return plugin.chunk(); });
    plugin.call (effEditClose);
    plugin.stop();
}

namespace
{
    // Host callbacks that each note which effects called them.
    std::mutex callersLock;
    std::map<int, std::set<Effect*>> callers;

    template <int host>
    intptr_t countingHost (Effect* effect, int32_t opcode, int32_t, intptr_t, void*, float)
    {
        const std::lock_guard<std::mutex> lock (callersLock);
        callers[host].insert (effect);
        return opcode == audioMasterVersion ? 2400 : 0;
    }
}

// Three hundred instances alive at once, opened eight at a time on eight
// threads, each by a host of its own: every instance calls back the host
// that opened it, and only that one.
TEST (Vst2Hosting, EveryInstanceCallsBackTheHostThatOpenedIt)
{
    constexpr int hosts = 8, perHost = 38;
    const Dispatcher hostCallbacks[hosts] { countingHost<0>, countingHost<1>, countingHost<2>, countingHost<3>,
                                            countingHost<4>, countingHost<5>, countingHost<6>, countingHost<7> };
    const SharedLibrary library { QUORLANE_VST2_PATH };
    const auto main = reinterpret_cast<Effect* (*) (Dispatcher)> (library.symbol ("VSTPluginMain"));
    ASSERT_NE (main, nullptr);

    std::array<std::vector<Effect*>, hosts> opened;
    std::vector<std::thread> openers;

    for (int h = 0; h < hosts; ++h)
        openers.emplace_back ([&, h]
        {
            for (int i = 0; i < perHost; ++i)
                if (auto* effect = main (hostCallbacks[h]))
                    opened[(size_t) h].push_back (effect);
        });

    for (auto& t : openers)
        t.join();

    // Each instance processes a block, asking its host for the time.
    std::vector<float> silence (64);
    float* channels[] = { silence.data(), silence.data() };

    for (auto& effects : opened)
    {
        ASSERT_EQ (effects.size(), (size_t) perHost);

        for (auto* effect : effects)
        {
            effect->dispatcher (effect, effOpen, 0, 0, nullptr, 0.0f);
            std::string name (256, '\0');
            effect->dispatcher (effect, effGetParamName, 6, 0, name.data(), 0.0f);
            EXPECT_STREQ (name.c_str(), "Late Size");
            effect->dispatcher (effect, effSetSampleRate, 0, 0, nullptr, 48000.0f);
            effect->dispatcher (effect, effSetBlockSize, 0, 64, nullptr, 0.0f);
            effect->dispatcher (effect, effMainsChanged, 0, 1, nullptr, 0.0f);
            effect->processReplacing (effect, channels, channels, 64);
        }
    }

    for (int h = 0; h < hosts; ++h)
        for (auto* effect : opened[(size_t) h])
        {
            for (int other = 0; other < hosts; ++other)
                EXPECT_EQ (callers[other].count (effect), other == h ? 1u : 0u) << "host " << other << " and host " << h << "'s instance";

            effect->dispatcher (effect, effMainsChanged, 0, 0, nullptr, 0.0f);
            effect->dispatcher (effect, effClose, 0, 0, nullptr, 0.0f);
        }
}
