#pragma once

#if defined(__SSE2__)
#define KELMORA_X86 1
#include <immintrin.h>
#endif

namespace kelmora {

#if defined(KELMORA_X86)

// What this processor has beyond SSE2, asked once.
inline bool hasCarrylessMultiply() {
    static const bool present = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
    return present;
}
inline bool hasByteShuffle() {
    static const bool present = __builtin_cpu_supports("ssse3");
    return present;
}
inline bool hasAvx2() {
    static const bool present = __builtin_cpu_supports("avx2") != 0;
    return present;
}

#endif

}  // namespace kelmora
