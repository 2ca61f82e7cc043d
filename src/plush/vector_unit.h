#pragma once

#if defined(__SSE2__)
#define KELMORA_X86 1
#include <immintrin.h>
#endif

namespace kelmora {

#if defined(KELMORA_X86)

// Asked of the processor once.
inline bool hasAvx2() {
    static const bool present = __builtin_cpu_supports("avx2") != 0;
    return present;
}

#endif

}  // namespace kelmora
