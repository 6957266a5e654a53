#include "engine/Quorlane.h"
#include "engine/QuorlaneCore.h"
#include "engine/QuorlaneParameterText.h"
#include "tests/support/ParameterNames.h"
#include "tests/support/PluginBlocks.h"

#include <gtest/gtest.h>

#include <thread>

// Names, automation and the MIDI answers are checked through each hosted
// format; here what only the processor itself shows. The host's defaults are
// the engine's, not the first preset's.
TEST (HostInterface, ShowsTheTwentyParametersAtTheEnginesDefaultsAndHidesTheInternalOnes)
{
    Quorlane plugin;
    const auto& params = plugin.getParameters();
    ASSERT_EQ (params.size(), 20);
    EXPECT_EQ (params[14]->getName (3), "X F");

    for (int i = 0; i < params.size(); ++i)
        EXPECT_FLOAT_EQ (params[i]->getDefaultValue(), (float) QuorlaneMapping::defaultValues[(size_t) i]) << quorlaneParameterNames[i];

    EXPECT_EQ (plugin.getHostParameterValue (500), 0.0f);
    const auto decayTime = plugin.getPluginParameter (21)->getValue();
    plugin.setHostParameterValue (21, 0.9f);
    plugin.setHostParameterValue (20, 0.9f);
    EXPECT_EQ (plugin.getPluginParameter (21)->getValue(), decayTime) << "the host cannot reach internal parameters";
    EXPECT_EQ (plugin.getPluginParameter (20)->getValue(), 0.0f);
}

TEST (HostInterface, ChangesFromTheHostAreNotEchoedButOthersAreReported)
{
    Quorlane plugin;
    HostGestures host (plugin);
    plugin.getParameters()[4]->setValue (0.25f);
    plugin.getPluginParameter (6)->setNormalisedValue (0.75f, ChangeOrigin::editor);
    plugin.getPluginParameter (20)->setNormalisedValue (1.0f, ChangeOrigin::editor);
    EXPECT_EQ (host.changes, (std::map<int, int> { { 6, 1 } })) << "neither the host's own change nor an internal parameter's is reported";
    EXPECT_FLOAT_EQ (host.values[6], 0.75f);
}

// The tail a host asks for is worked out from the parameters as they are,
// whichever thread moved them; the decay display follows on the message
// thread.
TEST (HostInterface, TailLengthAndDecayDisplayFollowTheDecayInputsFromEveryThread)
{
    Quorlane plugin;
    prepare (plugin, 64);
    auto& host = plugin.getParameters();

    const auto expected = [&plugin]
    {
        const auto live = liveValues (plugin);
        std::array<double, QuorlaneMapping::parameterCount> values {};
        std::copy (live.begin(), live.end(), values.begin());
        return QuorlaneCore::estimateDecaySeconds (values, 48000.0);
    };

    host[QuorlaneMapping::lateFeedback]->setValue (0.9f);
    EXPECT_DOUBLE_EQ (plugin.getTailLengthSeconds(), expected());

    std::thread ([&]
    {
        processBlocks (plugin, 64, 1);
        host[QuorlaneMapping::lateSize]->setValue (0.8f);
        host[QuorlaneMapping::predelay]->setValue (0.6f);
        EXPECT_DOUBLE_EQ (plugin.getTailLengthSeconds(), expected());
    }).join();

    runMessageLoop();
    EXPECT_NEAR (plugin.getPluginParameter (Quorlane::decayTimeIndex)->getValue(), expected(), 1e-3);
    plugin.releaseResources();
}

// After a prepare the engine runs the bass cut on a slightly different curve
// until the knob next moves; the host's and the editor's text says so.
TEST (HostInterface, LateBassCutTextIsTheCurveTheEngineRuns)
{
    Quorlane plugin;
    auto* bassCut = plugin.getParameters()[QuorlaneMapping::lateBassCut];
    const auto knobCurve = [] (float v) { return juce::String (quorlaneParameterText (QuorlaneMapping::lateBassCut, v)); };
    const auto preparedCurve = [] (float v) { return juce::String (quorlanePreparedBassCutText (v)); };
    ASSERT_NE (knobCurve (0.5f), preparedCurve (0.5f));

    bassCut->setValue (0.5f);
    prepare (plugin, 64);
    processBlocks (plugin, 64, 1);
    EXPECT_EQ (bassCut->getText (0.5f, 64), preparedCurve (0.5f)) << "after a prepare";
    EXPECT_EQ (bassCut->getText (0.6f, 64), knobCurve (0.6f)) << "a value the knob moves to is on the knob's curve";

    bassCut->setValue (0.6f);
    processBlocks (plugin, 64, 1);
    bassCut->setValue (0.5f);
    processBlocks (plugin, 64, 1);
    EXPECT_EQ (bassCut->getText (0.5f, 64), knobCurve (0.5f)) << "once the knob has moved";

    plugin.prepareToPlay (44100.0, 64);
    EXPECT_EQ (bassCut->getText (0.5f, 64), preparedCurve (0.5f)) << "after a sample-rate change";
    plugin.releaseResources();
}
