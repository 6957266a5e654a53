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

    // Which host callback belongs to which effect. Once the effect exists it
    // carries its own in the field the ABI leaves to the plug-in (the wrapper
    // does not use it); while the wrapper is still building it, its calls
    // come on the thread that opens it, which knows the host it serves.
    thread_local audioMasterCallback hostBeingOpened = nullptr;
    std::atomic<AEffectDispatcherProc> wrapperDispatcher { nullptr };

    audioMasterCallback hostFor (AEffect* effect)
    {
        if (effect != nullptr && effect->user != nullptr)
            return reinterpret_cast<audioMasterCallback> (effect->user);

        return hostBeingOpened;
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

    hostBeingOpened = host;
    auto* effect = quorlaneJuceVSTPluginMain (hostCallbackFromWrapper);
    hostBeingOpened = nullptr;

    if (effect == nullptr)
        return nullptr;

    effect->user = reinterpret_cast<void*> (host);
    wrapperDispatcher.store (effect->dispatcher);

    effect->dispatcher = dispatcher;
    effect->numPrograms = 0;
    effect->flags = effFlagsHasEditor | effFlagsCanReplacing | effFlagsProgramChunks;
    return effect;
}
