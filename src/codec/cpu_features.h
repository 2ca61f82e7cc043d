#pragma once

#if defined(__SSE2__)
#define VH_X86 1
#include <immintrin.h>
#endif

namespace vh::png {

#if defined(VH_X86)

// What this processor has beyond SSE2, asked once.
inline bool has_carryless_multiply() {
    static const bool present = __builtin_cpu_supports("pclmul") && __builtin_cpu_supports("sse4.1");
    return present;
}
inline bool has_byte_shuffle() {
    static const bool present = __builtin_cpu_supports("ssse3");
    return present;
}

#endif

}  // namespace vh::png
