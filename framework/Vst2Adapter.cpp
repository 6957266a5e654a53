// The VST 2.4 entry point. JUCE's wrapper does the work, but it is built on
// headers that leave several opcodes without their real numbers and it always
// announces at least one program. This adapter sits between the host and the
// wrapper: it owns the exported VSTPluginMain, translates the opcodes whose
// numbers differ, answers the capability and program queries itself and
// announces the plug-in exactly as it must appear to the host.

#ifdef VSTPluginMain
 #undef VSTPluginMain
#endif

// The header marks the opcodes it has no number for as deprecated; here they
// are named on purpose, to translate them.
#define FST_DONT_DEPRECATE_UNKNOWN 1
#include "pluginterfaces/vst2.x/aeffectx.h"

#include <array>
#include <atomic>
#include <cstring>

extern "C" AEffect* quorlaneJuceVSTPluginMain (audioMasterCallback);

namespace
{
    constexpr int hostParameterCount = 20;

    // Opcode numbers of the VST 2.4 ABI for the calls whose numbers the
    // wrapper's headers do not know.
    namespace Abi
    {
        enum EffectOpcode
        {
            effSetBypass = 44,
            effGetTailSize = 52,
            effKeysRequired = 57,
            effGetNumMidiInputChannels = 78,
            effGetNumMidiOutputChannels = 79
        };

        enum HostOpcode
        {
            audioMasterIOChanged = 13,
            audioMasterVendorSpecific = 35,
            audioMasterUpdateDisplay = 42
        };
    }

    struct OpcodePair
    {
        int abi;
        int wrapper;
    };

    constexpr OpcodePair effectOpcodes[] = {
        { Abi::effSetBypass, effSetBypass },
        { Abi::effGetTailSize, effGetTailSize },
        { Abi::effKeysRequired, effKeysRequired },
        { Abi::effGetNumMidiInputChannels, effGetNumMidiInputChannels },
        { Abi::effGetNumMidiOutputChannels, effGetNumMidiOutputChannels },
    };

    constexpr OpcodePair hostOpcodes[] = {
        { Abi::audioMasterIOChanged, audioMasterIOChanged },
        { Abi::audioMasterVendorSpecific, audioMasterVendorSpecific },
        { Abi::audioMasterUpdateDisplay, audioMasterUpdateDisplay },
    };

    struct CanDoAnswer
    {
        const char* query;
        int answer;
    };

    constexpr CanDoAnswer canDoAnswers[] = {
        { "receiveVstEvents", 1 },
        { "receiveVstMidiEvent", 1 },
        { "receiveVstMidiEvents", 1 },
        { "sendVstEvents", -1 },
        { "sendVstMidiEvent", -1 },
        { "sendVstMidiEvents", -1 },
        { "receiveVstTimeInfo", 1 },
        { "conformsToWindowRules", 1 },
        { "openCloseAnyThread", -1 },
    };

    // Which host callback belongs to which effect. The audio thread reads it
    // (time info is asked for every block), so it is a fixed table of atomics.
    struct Instance
    {
        std::atomic<AEffect*> effect { nullptr };
        std::atomic<audioMasterCallback> host { nullptr };
    };

    std::array<Instance, 256> instances;
    std::atomic<audioMasterCallback> lastHost { nullptr };
    std::atomic<AEffectDispatcherProc> wrapperDispatcher { nullptr };

    audioMasterCallback hostFor (AEffect* effect)
    {
        if (effect != nullptr)
            for (auto& instance : instances)
                if (instance.effect.load() == effect)
                    return instance.host.load();

        return lastHost.load();
    }

    void registerInstance (AEffect* effect, audioMasterCallback host)
    {
        for (auto& instance : instances)
        {
            AEffect* expected = nullptr;

            if (instance.effect.compare_exchange_strong (expected, effect))
            {
                instance.host.store (host);
                return;
            }
        }
    }

    void unregisterInstance (AEffect* effect)
    {
        for (auto& instance : instances)
        {
            if (instance.effect.load() == effect)
            {
                instance.host.store (nullptr);
                instance.effect.store (nullptr);
            }
        }
    }

    int translate (int opcode, const OpcodePair* begin, const OpcodePair* end, bool fromAbi)
    {
        for (auto* pair = begin; pair != end; ++pair)
            if ((fromAbi ? pair->abi : pair->wrapper) == opcode)
                return fromAbi ? pair->wrapper : pair->abi;

        return opcode;
    }

    VstIntPtr hostCallbackFromWrapper (AEffect* effect, int opcode, int index, VstIntPtr value, void* ptr, float opt)
    {
        auto host = hostFor (effect);

        if (host == nullptr)
            return 0;

        const int abiOpcode = translate (opcode, std::begin (hostOpcodes), std::end (hostOpcodes), false);
        return host (effect, abiOpcode, index, value, ptr, opt);
    }

    void writeEmptyString (void* ptr)
    {
        if (ptr != nullptr)
            *static_cast<char*> (ptr) = 0;
    }

    VstIntPtr dispatcher (AEffect* effect, int opcode, int index, VstIntPtr value, void* ptr, float opt)
    {
        auto wrapper = wrapperDispatcher.load();

        switch (opcode)
        {
            case effCanDo:
            {
                if (ptr == nullptr)
                    return 0;

                for (const auto& entry : canDoAnswers)
                    if (std::strcmp (static_cast<const char*> (ptr), entry.query) == 0)
                        return entry.answer;

                return 0;
            }

            // Presets live inside the plug-in; the host sees no programs.
            case effGetProgram:
            case effSetProgram:
            case effSetProgramName:
                return 0;

            case effGetProgramName:
            case effGetProgramNameIndexed:
                writeEmptyString (ptr);
                return 0;

            case effGetParamName:
            case effGetParamDisplay:
            case effGetParamLabel:
                if (index < 0 || index >= hostParameterCount)
                {
                    writeEmptyString (ptr);
                    return 0;
                }
                break;

            case effClose:
            {
                const auto result = wrapper (effect, opcode, index, value, ptr, opt);
                unregisterInstance (effect);
                return result;
            }

            default:
                break;
        }

        const int wrapperOpcode = translate (opcode, std::begin (effectOpcodes), std::end (effectOpcodes), true);
        return wrapper (effect, wrapperOpcode, index, value, ptr, opt);
    }
}

extern "C" __attribute__ ((visibility ("default"))) AEffect* VSTPluginMain (audioMasterCallback host)
{
    if (host == nullptr)
        return nullptr;

    lastHost.store (host);

    auto* effect = quorlaneJuceVSTPluginMain (hostCallbackFromWrapper);

    if (effect == nullptr)
        return nullptr;

    registerInstance (effect, host);
    wrapperDispatcher.store (effect->dispatcher);

    effect->dispatcher = dispatcher;
    effect->numPrograms = 0;
    effect->flags = effFlagsHasEditor | effFlagsCanReplacing | effFlagsProgramChunks;
    return effect;
}
