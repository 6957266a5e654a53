// The CLAP build as a host runs it, its audio threads watched from their
// first call through a busy session (AudioThreadCounters.h): a reset as a
// host does when its transport jumps, every parameter automated by events
// inside the block, controllers through the map, program changes.

#include "AudioThreadCounters.h"

#include "../support/ClapPlugin.h"
#include "../support/ParameterNames.h"
#include "../support/ScopedConfigHome.h"

#include <gtest/gtest.h>

TEST (AudioThread, ClapBuildNeverAllocatesTakesOurLocksOrPosts)
{
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "counted in the plain build";
#endif
    const ScopedConfigHome home;
    home.writeSettings ("<PresetSettings storing=\"automatic\"/>");
    Clap::Instance instance { QUORLANE_CLAP_PATH };
    ASSERT_TRUE (instance.active);

    constexpr uint32_t blockSize = 256, parameterSpacing = 12;
    std::string assignments;

    for (int i = 0; i < 20; ++i)
        assignments += "<assign param=\"" + std::string (quorlaneParameterNames[i]) + "\" CC=\"" + std::to_string (20 + i) + "\"/>";

    ASSERT_TRUE (instance.loadState (Clap::withControllerMap (instance.savedState(), assignments)));

    std::vector<float> left (blockSize), right (blockSize);
    Clap::InputEvents in;
    Clap::OutputEvents out;
    const auto* plugin = instance.plugin;

    // Ten seconds of blocks.
    playWatched (48000 * 10 / (int) blockSize, [&] (const SessionBlock& block)
    {
        if (block.first)
        {
            plugin->start_processing (plugin);
            plugin->reset (plugin);
        }

        in.clear();
        out.events.clear();

        // In time order: each parameter at its own sample, the controller after the first.
        for (uint32_t i = 0; i < 20; ++i)
        {
            in.add (i * parameterSpacing, i, block.automation ((int) i));

            if (i == 0)
                in.addMidi (parameterSpacing / 2, 0xb0, (uint8_t) block.controller(), (uint8_t) block.controllerValue());
        }

        if (block.program() >= 0)
            in.addMidi (blockSize - 1, 0xc0, (uint8_t) block.program(), 0);

        for (uint32_t i = 0; i < blockSize; ++i)
        {
            left[i] = (float) ((i * 7919 + (uint32_t) block.number) % 200) / 400.0f - 0.25f;
            right[i] = -left[i];
        }

        EXPECT_EQ (instance.processHere (left.data(), right.data(), blockSize, in, out), CLAP_PROCESS_CONTINUE);

        if (block.last)
            plugin->stop_processing (plugin);
    });

    // The map was played: the last block's controller reached the host.
    EXPECT_FALSE (out.events.empty());
}
