#pragma once

// The VST 2.4 ABI as a host sees it: the effect record, the opcodes the tests
// use and the event records, with the layout written out here rather than
// taken from any SDK header.

#include <cstddef>
#include <cstdint>

namespace Vst2
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
        effEditGetRect = 13, effEditOpen = 14, effEditClose = 15, effEditIdle = 19, effProcessEvents = 25,
        effCanBeAutomated = 26, effGetProgramNameIndexed = 29, effGetEffectName = 45,
        effGetVendorString = 47, effGetProductString = 48, effGetVendorVersion = 49, effCanDo = 51,
        effGetTailSize = 52, effGetVstVersion = 58, effStartProcess = 71, effStopProcess = 72
    };

    constexpr int32_t audioMasterVersion = 1;

    struct MidiEvent
    {
        int32_t type = 1, byteSize = sizeof (MidiEvent), deltaFrames = 0, flags = 0;
        int32_t noteLength = 0, noteOffset = 0;
        unsigned char data[4] {};
        char detune = 0, noteOffVelocity = 0, reserved1 = 0, reserved2 = 0;
    };

    struct SysExEvent
    {
        int32_t type = 6, byteSize = sizeof (SysExEvent), deltaFrames = 0, flags = 0;
        int32_t dumpBytes = 0;
        intptr_t reserved1 = 0;
        const unsigned char* dump = nullptr;
        intptr_t reserved2 = 0;
    };

    static_assert (offsetof (MidiEvent, data) == 24 && offsetof (SysExEvent, dump) == 32);

    // What effProcessEvents takes: a count and that many event pointers.
    template <int capacity>
    struct Events
    {
        int32_t count = 0;
        intptr_t reserved = 0;
        void* events[capacity] {};
    };
}
