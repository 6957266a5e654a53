// The VST2 build as a host runs it, its audio threads watched from their
// first block: automation of every parameter, controllers, SysEx and program
// changes, a second audio thread halfway. What the plug-in does there must
// never touch the heap, take a lock of ours, wait on a lock or post; the
// wrapper's own locks (its callback lock, JUCE's parameter listener locks)
// are told apart by where the wrapper takes them.

#include "AudioThreadCounters.h"

#include "../support/ScopedConfigHome.h"
#include "../support/Vst2Plugin.h"

#include <gtest/gtest.h>


TEST (AudioThread, Vst2BuildNeverAllocatesTakesOurLocksOrPosts)
{
#if defined(__SANITIZE_THREAD__)
    // ThreadSanitizer intercepts the lock functions counted here, and cannot
    // follow the wrapper's own (uninstrumented) message thread in the library.
    GTEST_SKIP() << "counted in the plain build";
#endif
    using namespace Vst2;
    const ScopedConfigHome home;
    home.writeSettings ("<PresetSettings storing=\"automatic\"/>");
    Plugin plugin { QUORLANE_VST2_PATH };
    ASSERT_NE (plugin.effect, nullptr) << plugin.library.error();

    constexpr int blockSize = 256, numParameters = 20;
    plugin.start (blockSize);
    std::vector<float> left (blockSize), right (blockSize);
    const auto moveParameter = [&plugin] (int index) { plugin.set (index, plugin.get (index) < 0.5f ? 0.9f : 0.1f); };

    // The events a block brings: a controller, SysEx longer than any short
    // message, and now and then a program change.
    const unsigned char dump[] = { 0xf0, 0x7e, 0x7f, 0x06, 0x01, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0xf7 };
    MidiEvent controller, program;
    SysExEvent sysEx;
    sysEx.dumpBytes = (int32_t) sizeof (dump);
    sysEx.dump = dump;
    sysEx.deltaFrames = 100;
    program.deltaFrames = blockSize - 1;

    const auto play = [&] (int firstBlock, int lastBlock)
    {
        // The wrapper keeps a flag per thread, which it makes on a thread's
        // first parameter change: its allocation, not the plug-in's.
        moveParameter (0);
        const AudioThreadCounters::Watch watch;

        for (int block = firstBlock; block < lastBlock; ++block)
        {
            for (int i = 0; i < numParameters; ++i)
                plugin.set (i, (float) ((block * 7 + i * 13) % 101) / 100.0f);

            Events<3> events;
            controller.data[0] = 0xb0;
            controller.data[1] = (unsigned char) (20 + block % 8);
            controller.data[2] = (unsigned char) (block % 128);
            events.events[events.count++] = &controller;
            events.events[events.count++] = &sysEx;

            if (block % 40 == 0)
            {
                program.data[0] = 0xc0;
                program.data[1] = (unsigned char) ((block / 40) % 47);
                events.events[events.count++] = &program;
            }

            plugin.call (effProcessEvents, 0, 0, &events);
            plugin.process (left, right);
        }
    };

    // Ten seconds of blocks.
    playOnTwoAudioThreads (48000 * 10 / blockSize, play);
    expectNothingForbidden();
    plugin.stop();
}
