#include "base/cpu_features.h"

#if defined(KELMORA_X86)

#include "plush/scene/ray_kernels.h"

namespace kelmora {
namespace {

#define KELMORA_LANES

struct Fours {
    __m128d low;
    __m128d high;
};

inline Fours all(double value) {
    return {_mm_set1_pd(value), _mm_set1_pd(value)};
}
inline Fours load(const double* from) {
    return {_mm_loadu_pd(from), _mm_loadu_pd(from + 2)};
}
inline void store(double* to, Fours value) {
    _mm_store_pd(to, value.low);
    _mm_store_pd(to + 2, value.high);
}
inline Fours add(Fours a, Fours b) {
    return {_mm_add_pd(a.low, b.low), _mm_add_pd(a.high, b.high)};
}
inline Fours multiply(Fours a, Fours b) {
    return {_mm_mul_pd(a.low, b.low), _mm_mul_pd(a.high, b.high)};
}
inline Fours divide(Fours a, Fours b) {
    return {_mm_div_pd(a.low, b.low), _mm_div_pd(a.high, b.high)};
}
inline Fours root(Fours a) {
    return {_mm_sqrt_pd(a.low), _mm_sqrt_pd(a.high)};
}
inline Fours less(Fours a, Fours b) {
    return {_mm_cmplt_pd(a.low, b.low), _mm_cmplt_pd(a.high, b.high)};
}
inline Fours both(Fours a, Fours b) {
    return {_mm_and_pd(a.low, b.low), _mm_and_pd(a.high, b.high)};
}
inline Fours either(Fours a, Fours b) {
    return {_mm_or_pd(a.low, b.low), _mm_or_pd(a.high, b.high)};
}
// The bits of a that b does not have.
inline Fours without(Fours a, Fours b) {
    return {_mm_andnot_pd(b.low, a.low), _mm_andnot_pd(b.high, a.high)};
}
inline Fours choose(Fours mask, Fours a, Fours b) {
    return either(both(mask, a), without(b, mask));
}
inline __m128 narrowed(Fours a) {
    return _mm_movelh_ps(_mm_cvtpd_ps(a.low), _mm_cvtpd_ps(a.high));
}

#include "plush/scene/ray_kernel_loops.h"

}  // namespace

const RayKernels sse2RayKernels{aim, shade};

}  // namespace kelmora

#endif
