// The CLAP build as a host runs it, its audio threads watched from their
// first call: a reset, every parameter automated by events inside the block,
// controllers through the map, program changes, a second audio thread
// halfway. What the plug-in does there must never touch the heap, take a
// lock of ours, wait on a lock or post. JUCE's parameter listener locks,
// which a controller's move takes, are told apart by where they are taken.

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

    constexpr int numParameters = 20, firstController = 20;
    constexpr uint32_t blockSize = 256, parameterSpacing = 12;
    std::string assignments;

    for (int i = 0; i < numParameters; ++i)
        assignments += "<assign param=\"" + std::string (quorlaneParameterNames[i]) + "\" CC=\"" + std::to_string (firstController + i) + "\"/>";

    ASSERT_TRUE (instance.loadState (Clap::withControllerMap (instance.savedState(), assignments)));

    std::vector<float> left (blockSize), right (blockSize);
    Clap::InputEvents in;
    Clap::OutputEvents out;

    const auto play = [&] (uint32_t block)
    {
        for (uint32_t i = 0; i < blockSize; ++i)
        {
            left[i] = (float) ((i * 7919 + block) % 200) / 400.0f - 0.25f;
            right[i] = -left[i];
        }

        return instance.processHere (left.data(), right.data(), blockSize, in, out);
    };

    // Each block: every parameter at its own sample, a controller, and now
    // and then a program change at the last sample.
    const auto run = [&] (int firstBlock, int lastBlock)
    {
        const AudioThreadCounters::Watch watch;
        instance.plugin->start_processing (instance.plugin);
        // As a host does when its transport jumps.
        instance.plugin->reset (instance.plugin);

        for (auto block = (uint32_t) firstBlock; block < (uint32_t) lastBlock; ++block)
        {
            in.clear();
            out.events.clear();

            for (uint32_t i = 0; i < numParameters; ++i)
            {
                in.add (i * parameterSpacing, i, (double) ((block * 7 + i * 13) % 101) / 100.0);

                if (i == 0)
                    in.addMidi (parameterSpacing / 2, 0xb0, (uint8_t) (firstController + block % numParameters), (uint8_t) (block % 128));
            }

            if (block % 40 == 0)
                in.addMidi (blockSize - 1, 0xc0, (uint8_t) ((block / 40) % 47), 0);

            ASSERT_EQ (play (block), CLAP_PROCESS_CONTINUE);
        }

        instance.plugin->stop_processing (instance.plugin);
    };

    // Ten seconds of blocks.
    const int blocks = 48000 * 10 / (int) blockSize;
    playOnTwoAudioThreads (blocks, run);
    expectNothingForbidden();

    // The last block's controller moved its parameter, and the host heard of it.
    const auto moved = (clap_id) ((blocks - 1) % numParameters);
    bool reported = false;

    for (const auto& event : out.events)
        reported = reported || (event.type == CLAP_EVENT_PARAM_VALUE && event.param == moved);

    EXPECT_TRUE (reported) << "parameter " << moved;
}
