// The VST2 build as a host runs it, its audio threads watched from their
// first block through a busy session (AudioThreadCounters.h): automation,
// controllers, SysEx and program changes through effProcessEvents.

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

    constexpr int blockSize = 256;
    plugin.start (blockSize);
    std::vector<float> left (blockSize), right (blockSize);
    MidiEvent controller, program;
    SysExEvent sysEx;
    sysEx.dumpBytes = (int32_t) sizeof (SessionBlock::sysEx);
    sysEx.dump = SessionBlock::sysEx;
    sysEx.deltaFrames = 100;
    program.deltaFrames = blockSize - 1;

    playWatched (48000 * 10 / blockSize, [&] (const SessionBlock& block)
    {
        for (int i = 0; i < 20; ++i)
            plugin.set (i, block.automation (i));

        Events<3> events { 2, 0, { &controller, &sysEx } };
        controller.data[0] = 0xb0;
        controller.data[1] = (unsigned char) block.controller();
        controller.data[2] = (unsigned char) block.controllerValue();
        program.data[0] = 0xc0;
        program.data[1] = (unsigned char) block.program();

        if (block.program() >= 0)
            events.events[events.count++] = &program;

        plugin.call (effProcessEvents, 0, 0, &events);
        plugin.process (left, right);
    },
    // The wrapper keeps a flag per thread, which it makes on a thread's first
    // parameter change: its allocation, not the plug-in's.
    [&] { plugin.set (0, plugin.get (0) < 0.5f ? 0.9f : 0.1f); });
    plugin.stop();
}
