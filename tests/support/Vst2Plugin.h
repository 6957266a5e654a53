#pragma once

#include "SharedLibrary.h"
#include "Vst2Abi.h"

#include <string>
#include <vector>

namespace Vst2
{
    // A host that answers only the question of its version.
    inline intptr_t minimalHost (Effect*, int32_t opcode, int32_t, intptr_t, void*, float)
    {
        return opcode == audioMasterVersion ? 2400 : 0;
    }

    // An instance opened as a host opens one (VSTPluginMain, then effOpen)
    // and closed with effClose; `effect` is null when the library did not load.
    class Plugin
    {
    public:
        explicit Plugin (const std::string& path) : library (path.c_str())
        {
            if (auto main = reinterpret_cast<Effect* (*) (Dispatcher)> (library.symbol ("VSTPluginMain")))
                effect = main (minimalHost);

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
