#include "engine/InstructionSet.h"

bool InstructionSet::hasAvx2AndFma() noexcept
{
   #if QUORLANE_X86_DISPATCH
    static const bool has = []
    {
        __builtin_cpu_init();
        return __builtin_cpu_supports ("avx2") && __builtin_cpu_supports ("fma");
    }();

    return has;
   #else
    return false;
   #endif
}
