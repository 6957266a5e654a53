#pragma once

// The instruction sets that the engine's inner loops are built for: the
// portable one, and on x86-64 also AVX2 with fused multiply-adds, chosen at
// run time where the processor has them.
//
// QUORLANE_TARGET_FMA marks a function built for AVX2 and FMA;
// QUORLANE_FMA_KERNEL marks one that also takes in every call it makes, so
// that what it calls is built for them too. Both mark nothing where there is
// no such choice.
#if defined(__GNUC__) && defined(__x86_64__)
 #define QUORLANE_X86_DISPATCH 1
 #define QUORLANE_TARGET_FMA __attribute__ ((target ("avx2,fma")))
 #define QUORLANE_FMA_KERNEL __attribute__ ((target ("avx2,fma"), flatten))
#else
 #define QUORLANE_X86_DISPATCH 0
 #define QUORLANE_TARGET_FMA
 #define QUORLANE_FMA_KERNEL
#endif

namespace InstructionSet
{
// Whether this processor runs AVX2 and FMA instructions and this build has
// code for them.
bool hasAvx2AndFma() noexcept;
}
