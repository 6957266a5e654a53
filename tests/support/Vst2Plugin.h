#pragma once

// The VST 2.4 ABI as a host sees it (the effect record, the opcodes the tests
// use and the event records, with the layout written out here rather than
// taken from any SDK header), and an instance opened through it.

#include "SharedLibrary.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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
    struct Events { int32_t count = 0; intptr_t reserved = 0; void* events[capacity] {}; };

    // An instance opened as a host opens one (VSTPluginMain, then effOpen)
    // and closed with effClose; `effect` is null when the library did not load.
    class Plugin
    {
    public:
        explicit Plugin (const std::string& path) : library (path.c_str())
        {
            // A host that answers only the question of its version.
            if (auto main = reinterpret_cast<Effect* (*) (Dispatcher)> (library.symbol ("VSTPluginMain")))
                effect = main ([] (Effect*, int32_t opcode, int32_t, intptr_t, void*, float) -> intptr_t { return opcode == audioMasterVersion ? 2400 : 0; });

            if (effect != nullptr)
                call (effOpen);
        }

        ~Plugin()
        {
            if (effect != nullptr)
                call (effClose);
        }

        Plugin (const Plugin&) = delete;
        Plugin& operator= (const Plugin&) = delete;

        intptr_t call (int32_t opcode, int32_t index = 0, intptr_t value = 0, void* ptr = nullptr, float opt = 0.0f)
        {
            return effect->dispatcher (effect, opcode, index, value, ptr, opt);
        }

        float get (int32_t index) { return effect->getParameter (effect, index); }
        void set (int32_t index, float value) { effect->setParameter (effect, index, value); }

        // Prepared for 48 kHz and the given block size, and processing.
        void start (int blockSize)
        {
            call (effSetSampleRate, 0, 0, nullptr, 48000.0f);
            call (effSetBlockSize, 0, blockSize);
            call (effMainsChanged, 0, 1);
            call (effStartProcess);
        }

        void stop()
        {
            call (effStopProcess);
            call (effMainsChanged, 0, 0);
        }

        // In place, as hosts often call it.
        void process (std::vector<float>& left, std::vector<float>& right)
        {
            float* channels[] = { left.data(), right.data() };
            effect->processReplacing (effect, channels, channels, (int32_t) left.size());
        }

        // Filled first, so that an answer left unterminated shows.
        std::string text (int32_t opcode, int32_t index = 0)
        {
            std::string buffer (256, 'X');
            call (opcode, index, 0, buffer.data());
            return buffer.c_str();
        }

        // The whole state, or the program chunk (the current preset alone).
        std::string chunk (bool program = false)
        {
            void* data = nullptr;
            const auto size = call (effGetChunk, program ? 1 : 0, 0, &data);
            return data != nullptr && size > 0 ? std::string (static_cast<const char*> (data), (size_t) size) : std::string();
        }

        void setChunk (const std::string& chunk, bool program = false)
        {
            call (effSetChunk, program ? 1 : 0, (intptr_t) chunk.size(), const_cast<char*> (chunk.data()));
        }

        const SharedLibrary library;
        Effect* effect = nullptr;
    };
}
