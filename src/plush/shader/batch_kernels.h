#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/cpu_features.h"
#include "plush/shader/batch_program.h"
#include "plush/shader/machine.h"

// The inner loops of batches. Counts of lanes and pixels are multiples of `batchStep`, and arrays and pixels
// are there up to them. Each set gives the bits of the plain machine.
namespace kelmora::plush_shader::detail {

inline constexpr std::size_t batchStep = 8;

using ComputeLanes = void (*)(float* dst, const float* a, const float* b, const float* c, std::size_t lanes);
// Sets a mask; false when no lane of it is.
using CompareLanes = bool (*)(float* mask, const float* a, const float* b, std::size_t lanes);

using ChannelLanes = std::array<float*, 4>;

struct BatchKernels {
    std::array<ComputeLanes, opCount> compute;  // samples take the channel out of fetched pixels in `a`
    std::array<CompareLanes, comparisonCount> compare;
    // The bytes of the source pixels at (x, y), as they are.
    void (*fetch)(float* dst, const float* x, const float* y, const SourcePicture& source, std::size_t lanes);
    void (*merge)(float* dst, const float* a, const float* mask, std::size_t lanes);
    // Sets `parked` where the mask is not.
    void (*others)(float* parked, const float* mask, std::size_t lanes);
    // Cuts the mask down to what goes on; the rest joins `parked`, unless that is null. False when none goes
    // on.
    bool (*split)(float* mask, float* parked, const float* goingOn, std::size_t lanes);
    void (*park)(float* parked, const float* mask, std::size_t lanes);
    // Adds those that wait to the mask, or makes them the mask, and clears them. False when there are none.
    bool (*reconverge)(float* mask, float* parked, bool only, std::size_t lanes);
    // By the set of channels, as in `Program::writeMask`: from pixels to these channels, and from these
    // channels to pixels whose other bytes are 0.
    std::array<void (*)(const unsigned char* pixels, const ChannelLanes& channels, std::size_t lanes), 16>
        load;
    std::array<void (*)(float* dst, const ChannelLanes& channels, std::size_t lanes), 16> pack;
    // Replaces the given bits of pixels by those of `values`, and of `others` if there are any, where the
    // mask is set if there is one.
    void (*deposit)(unsigned char* pixels, std::uint32_t bits, const float* values, const float* others,
                    const float* mask, std::size_t lanes);
    // first * scale, (first + 1) * scale and so on, each rounded twice.
    void (*positions)(float* dst, std::int32_t first, float scale, std::size_t lanes);
    // Replaces the masked bits of pixels; for any count.
    void (*fill)(unsigned char* pixels, std::uint32_t value, std::uint32_t mask, std::size_t count);
};

extern const BatchKernels plainBatchKernels;
#if defined(KELMORA_X86)
extern const BatchKernels sse2BatchKernels;
extern const BatchKernels avx2BatchKernels;  // only where hasAvx2()
#endif

// The set in use: the fastest that the processor has, unless `useBatchKernels` chose another.
const BatchKernels& batchKernels();
// For tests and measurements; null goes back to the fastest.
void useBatchKernels(const BatchKernels* kernels);

// What the standard library computes lane by lane, for all sets.
namespace library {
void sine(float* dst, const float* a, const float* b, const float* c, std::size_t lanes);
void cosine(float* dst, const float* a, const float* b, const float* c, std::size_t lanes);
void tangent(float* dst, const float* a, const float* b, const float* c, std::size_t lanes);
void arcTangent(float* dst, const float* a, const float* b, const float* c, std::size_t lanes);
void exponential(float* dst, const float* a, const float* b, const float* c, std::size_t lanes);
void logarithm(float* dst, const float* a, const float* b, const float* c, std::size_t lanes);
void power(float* dst, const float* a, const float* b, const float* c, std::size_t lanes);
void angle(float* dst, const float* a, const float* b, const float* c, std::size_t lanes);
}  // namespace library

// A byte divided by 255 is the sum of its products with these, for every byte: the first is exact, and the
// second small enough that the sum is rounded as the quotient is.
inline constexpr float channelFactor = 0x1.01p-8f;
inline constexpr float channelFactorRest = static_cast<float>(1.0 / 255 - 0x1.01p-8);

}  // namespace kelmora::plush_shader::detail
