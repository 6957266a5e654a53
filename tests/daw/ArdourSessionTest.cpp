// Each format's build in a real DAW: Debian's Ardour 7, run headless through
// its Lua interpreter (automated-session.lua), plays a session in real time
// with one parameter automated while a track records the output, and saves
// it. Ardour loads the plug-in its own way, on its own threads, with its own
// scanner, automation and state handling. Automatic storing is on, so the
// automated value must end up in the current preset of the saved state.

#include <juce_audio_formats/juce_audio_formats.h>

#include "../support/SavedPluginState.h"
#include "../support/ScopedSettingsFile.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <vector>

namespace
{
    // Where Debian's package keeps the programs Ardour indexes plug-ins with.
    const juce::File ardourPrograms ("/usr/lib/ardour7");

    // What automated-session.lua plays and records, about 1.7 s: noise until
    // 0.5 s, then silence; the parameter ramps between two fractions of its
    // range until 1 s.
    constexpr double sampleRate = 48000.0;
    constexpr double noiseEnds = 0.5;
    const juce::String automatedParameter = "Late Size";
    constexpr float automatedFrom = 0.3f, automatedTo = 0.6f;

    struct Format
    {
        const char* name;
        const char* ardourType;
        // Unset for an installed copy: Ardour then looks only where it always
        // looks.
        juce::String pathVariable;
        juce::File build;
        // Ardour's indexer for builds of this format (LV2 needs none).
        juce::String scanner;

        friend void PrintTo (const Format& f, std::ostream* os) { *os << f.name; }
    };

    // A program run with extra environment variables, for at most a minute:
    // its exit code and what it printed.
    std::pair<int, std::string> run (const juce::StringArray& environment, const juce::StringArray& command)
    {
        juce::StringArray arguments { "timeout", "60", "env" };
        arguments.addArray (environment);
        arguments.addArray (command);
        juce::ChildProcess process;

        if (! process.start (arguments, juce::ChildProcess::wantStdOut | juce::ChildProcess::wantStdErr))
            return { -1, {} };

        const auto output = process.readAllProcessOutput().toStdString();
        process.waitForProcessToFinish (10000);
        return { (int) process.getExitCode(), output };
    }

    const juce::XmlElement* processorNamed (const juce::XmlElement& parent, const juce::String& name)
    {
        for (auto* child : parent.getChildIterator())
            if (child->hasTagName ("Processor") && child->getStringAttribute ("name") == name)
                return child;
            else if (auto* found = processorNamed (*child, name))
                return found;

        return nullptr;
    }

    // The plug-in's state as Ardour saved it: VST2 and VST3 keep it in the
    // processor's <chunk>; LV2 in the Turtle file of the state folder the
    // processor names, in the session's plugins folder.
    std::unique_ptr<juce::XmlElement> savedPluginState (const juce::File& sessionFile)
    {
        const auto session = juce::parseXML (sessionFile);
        const auto* processor = session != nullptr ? processorNamed (*session, "Quorlane") : nullptr;

        if (processor == nullptr)
            return nullptr;

        auto saved = processor->toString();

        for (auto* formatState : processor->getChildIterator())
            if (formatState->hasAttribute ("state-dir"))
                saved += sessionFile.getSiblingFile ("plugins").getChildFile (processor->getStringAttribute ("id"))
                             .getChildFile (formatState->getStringAttribute ("state-dir")).getChildFile ("state.ttl").loadFileAsString();

        return pluginStateIn (saved);
    }

    double rms (const juce::AudioBuffer<float>& audio, double fromSeconds, double toSeconds)
    {
        const auto start = (int) (fromSeconds * sampleRate);
        const auto length = juce::jmin ((int) (toSeconds * sampleRate), audio.getNumSamples()) - start;
        return length > 0 ? std::hypot (audio.getRMSLevel (0, start, length), audio.getRMSLevel (1, start, length)) / std::sqrt (2.0) : 0.0;
    }

    class ArdourSession : public ::testing::TestWithParam<Format>
    {
    protected:
        void TearDown() override
        {
            // A failed run's session is kept for a look.
            if (! HasFailure())
                folder.deleteRecursively();
        }

        // Ardour's and the plug-in's settings, caches and the session, all in
        // one fresh folder: never the real user's.
        const juce::File folder = juce::File::getSpecialLocation (juce::File::tempDirectory)
                                      .getNonexistentChildFile ("quorlane-ardour", {}, false);
        const juce::File config = folder.getChildFile ("config");
        const juce::File sessionDir = folder.getChildFile ("session");

        juce::StringArray environment() const
        {
            juce::StringArray variables { "HOME=" + folder.getFullPathName(),
                                          "XDG_CONFIG_HOME=" + config.getFullPathName(),
                                          "XDG_CACHE_HOME=" + folder.getChildFile ("cache").getFullPathName() };

            if (GetParam().pathVariable.isNotEmpty())
                variables.add (GetParam().pathVariable + "=" + GetParam().build.getParentDirectory().getFullPathName());

            return variables;
        }

        void prepare() const
        {
            const auto settings = config.getChildFile ("Quorlane/Quorlane.ini");
            ASSERT_TRUE (settings.getParentDirectory().createDirectory());
            ASSERT_TRUE (settings.replaceWithText ("<UserSettings application=\"Quorlane\"><PresetSettings "
                                                   "storing=\"automatic\" changing=\"normal\" mixLock=\"off\"/></UserSettings>"));

            // Ardour's own scanners index VST2 and VST3 builds into its cache,
            // as its "Scan for plug-ins" does; the session then finds them there.
            if (GetParam().scanner.isNotEmpty())
            {
                auto withLibraries = environment();
                withLibraries.add ("LD_LIBRARY_PATH=" + ardourPrograms.getFullPathName());
                const auto scan = run (withLibraries, { ardourPrograms.getChildFile (GetParam().scanner).getFullPathName(),
                                                        GetParam().build.getFullPathName() });
                ASSERT_EQ (scan.first, 0) << "Ardour's scanner failed on " << GetParam().build.getFullPathName() << ":\n" << scan.second;
            }
        }
    };
}

TEST_P (ArdourSession, RendersATailAndStoresTheAutomatedValueInTheCurrentPreset)
{
    ASSERT_TRUE (ardourPrograms.isDirectory()) << "Ardour 7 is not installed (`make test` installs Debian's ardour)";
    ASSERT_NO_FATAL_FAILURE (prepare());

    const auto ardour = run (environment(), { "ardour7-lua", juce::File (QUORLANE_DAW_DIR).getChildFile ("automated-session.lua").getFullPathName(),
                                              sessionDir.getFullPathName(), GetParam().ardourType, "Quorlane",
                                              automatedParameter, juce::String (automatedFrom), juce::String (automatedTo) });
    SCOPED_TRACE ("Ardour said:\n" + ardour.second + "(the session is kept in " + folder.getFullPathName().toStdString() + ")");
    ASSERT_EQ (ardour.first, 0) << "Ardour's session did not run through";

    // The render: finite, sound while the noise plays, and the reverb's tail,
    // decaying, after it ends (the noise is gated to exact silence).
    juce::AudioBuffer<float> render (2, 0);

    for (int channel = 0; channel < 2; ++channel)
    {
        const auto files = sessionDir.findChildFiles (juce::File::findFiles, true, juce::String ("*Render*%") + "LR"[channel] + ".wav");
        ASSERT_EQ (files.size(), 1) << "no recording of channel " << channel << " in " << sessionDir.getFullPathName();
        std::unique_ptr<juce::AudioFormatReader> reader (juce::WavAudioFormat().createReaderFor (files[0].createInputStream().release(), true));
        ASSERT_TRUE (reader != nullptr && reader->sampleRate == sampleRate && reader->numChannels == 1u) << files[0].getFullPathName();
        const auto length = (int) reader->lengthInSamples;
        render.setSize (2, channel == 0 ? length : juce::jmin (length, render.getNumSamples()), true);
        ASSERT_TRUE (reader->read (render.getArrayOfWritePointers() + channel, 1, 0, render.getNumSamples()));
    }

    ASSERT_GE (render.getNumSamples(), (int) (1.5 * sampleRate)) << "the recording is short";

    for (int i = 0; i < render.getNumSamples(); ++i)
        ASSERT_TRUE (std::isfinite (render.getSample (0, i)) && std::isfinite (render.getSample (1, i))) << "sample " << i;

    const auto playing = rms (render, 0.1, noiseEnds);
    const auto tail = rms (render, noiseEnds + 0.1, noiseEnds + 0.5);
    const auto later = rms (render, 1.2, 1.5);
    EXPECT_GT (playing, 1.0e-3) << "the render is silent while the noise plays";
    EXPECT_GT (tail, playing * 1.0e-2) << "no reverb tail after the noise ends (RMS " << tail << " against " << playing << ")";
    EXPECT_LT (later, tail) << "the tail does not decay";

    // The saved state: the live value follows the automation, and automatic
    // storing has put it into the current preset.
    const auto state = savedPluginState (sessionDir.getChildFile ("daw-test.ardour"));
    ASSERT_NE (state, nullptr) << "no plug-in state in the saved session " << sessionDir.getFullPathName();
    const auto* live = state->getChildByName ("ParametersState");
    const auto* param = live != nullptr ? live->getChildByAttribute ("name", automatedParameter) : nullptr;
    ASSERT_NE (param, nullptr) << "no live " << automatedParameter;
    EXPECT_NEAR (param->getDoubleAttribute ("value"), automatedTo, 1.0e-3) << "the automation did not reach the plug-in";
    EXPECT_NEAR (storedInCurrentPreset (state->toString().toStdString(), automatedParameter.toStdString()), automatedTo, 1.0e-3)
        << "the automated change was not stored into the current preset with automatic storing on";
}

INSTANTIATE_TEST_SUITE_P (Formats, ArdourSession,
    ::testing::Values (Format { "VST2", "LXVST", "LXVST_PATH", juce::File (QUORLANE_VST2_PATH), "ardour-vst-scanner" },
                       Format { "VST3", "VST3", "VST3_PATH", juce::File (QUORLANE_VST3_PATH), "ardour-vst3-scanner" },
                       Format { "LV2", "LV2", "LV2_PATH", juce::File (QUORLANE_LV2_DIR).getChildFile ("Quorlane.lv2"), {} }),
    [] (const auto& info) { return std::string (info.param.name); });

// What the Debian package installed, found where Ardour looks by default
// (`make package-test` sets QUORLANE_DAW_INSTALLED=/usr/lib after installing
// it; a plain test run has no such instances).
static std::vector<Format> installedFormats()
{
    const auto* prefix = std::getenv ("QUORLANE_DAW_INSTALLED");

    if (prefix == nullptr)
        return {};

    const juce::File lib (prefix);
    return { Format { "VST2", "LXVST", {}, lib.getChildFile ("lxvst/Quorlane.so"), "ardour-vst-scanner" },
             Format { "VST3", "VST3", {}, lib.getChildFile ("vst3/Quorlane.vst3"), "ardour-vst3-scanner" },
             Format { "LV2", "LV2", {}, lib.getChildFile ("lv2/Quorlane.lv2"), {} } };
}

INSTANTIATE_TEST_SUITE_P (Installed, ArdourSession, ::testing::ValuesIn (installedFormats()),
    [] (const auto& info) { return std::string (info.param.name); });
