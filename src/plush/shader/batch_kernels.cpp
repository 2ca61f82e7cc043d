#include "plush/shader/batch_kernels.h"

#include <cmath>

#include "plush/shader/arithmetic.h"

namespace kelmora::plush_shader::detail {
namespace {

template <float (*function)(float)>
void eachLane(float* dst, const float* a, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; ++i) dst[i] = function(a[i]);
}
template <float (*function)(float, float)>
void eachPair(float* dst, const float* a, const float* b, std::size_t lanes) {
    for (std::size_t i = 0; i < lanes; ++i) dst[i] = function(a[i], b[i]);
}

const BatchKernels& fastestKernels() {
#if defined(KELMORA_X86)
    return hasAvx2() ? avx2BatchKernels : sse2BatchKernels;
#else
    return plainBatchKernels;
#endif
}

const BatchKernels* chosenKernels = nullptr;

}  // namespace

namespace library {

void sine(float* dst, const float* a, const float*, const float*, std::size_t lanes) {
    eachLane<arithmetic::sine>(dst, a, lanes);
}
void cosine(float* dst, const float* a, const float*, const float*, std::size_t lanes) {
    eachLane<arithmetic::cosine>(dst, a, lanes);
}
void tangent(float* dst, const float* a, const float*, const float*, std::size_t lanes) {
    eachLane<arithmetic::tangent>(dst, a, lanes);
}
void arcTangent(float* dst, const float* a, const float*, const float*, std::size_t lanes) {
    eachLane<arithmetic::arcTangent>(dst, a, lanes);
}
void exponential(float* dst, const float* a, const float*, const float*, std::size_t lanes) {
    eachLane<arithmetic::exponential>(dst, a, lanes);
}
void logarithm(float* dst, const float* a, const float*, const float*, std::size_t lanes) {
    eachLane<arithmetic::logarithm>(dst, a, lanes);
}
void power(float* dst, const float* a, const float* b, const float*, std::size_t lanes) {
    eachPair<arithmetic::power>(dst, a, b, lanes);
}
void angle(float* dst, const float* a, const float* b, const float*, std::size_t lanes) {
    eachPair<arithmetic::angle>(dst, a, b, lanes);
}

}  // namespace library

const BatchKernels& batchKernels() {
    return chosenKernels ? *chosenKernels : fastestKernels();
}

void useBatchKernels(const BatchKernels* kernels) {
    chosenKernels = kernels;
}

}  // namespace kelmora::plush_shader::detail
