#include "base/cpu_features.h"

#if defined(KELMORA_X86)

#include "plush/scene/ray_kernels.h"

namespace kelmora {
namespace {

#define KELMORA_LANES [[gnu::target("avx2")]]

using Fours = __m256d;

KELMORA_LANES inline Fours all(double value) {
    return _mm256_set1_pd(value);
}
KELMORA_LANES inline Fours load(const double* from) {
    return _mm256_loadu_pd(from);
}
KELMORA_LANES inline void store(double* to, Fours value) {
    _mm256_store_pd(to, value);
}
KELMORA_LANES inline Fours add(Fours a, Fours b) {
    return _mm256_add_pd(a, b);
}
KELMORA_LANES inline Fours multiply(Fours a, Fours b) {
    return _mm256_mul_pd(a, b);
}
KELMORA_LANES inline Fours divide(Fours a, Fours b) {
    return _mm256_div_pd(a, b);
}
KELMORA_LANES inline Fours root(Fours a) {
    return _mm256_sqrt_pd(a);
}
KELMORA_LANES inline Fours less(Fours a, Fours b) {
    return _mm256_cmp_pd(a, b, _CMP_LT_OQ);
}
KELMORA_LANES inline Fours both(Fours a, Fours b) {
    return _mm256_and_pd(a, b);
}
KELMORA_LANES inline Fours either(Fours a, Fours b) {
    return _mm256_or_pd(a, b);
}
// The bits of a that b does not have.
KELMORA_LANES inline Fours without(Fours a, Fours b) {
    return _mm256_andnot_pd(b, a);
}
KELMORA_LANES inline Fours choose(Fours mask, Fours a, Fours b) {
    return _mm256_blendv_pd(b, a, mask);
}
KELMORA_LANES inline __m128 narrowed(Fours a) {
    return _mm256_cvtpd_ps(a);
}

#include "plush/scene/ray_kernel_loops.h"

}  // namespace

const RayKernels avx2RayKernels{aim, shade};

}  // namespace kelmora

#endif
