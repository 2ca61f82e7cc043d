#include <bit>
#include <cmath>
#include <cstring>
#include <utility>

#include "plush/shader/arithmetic.h"
#include "plush/shader/batch_kernels.h"

namespace kelmora::plush_shader::detail {
namespace {

// One lane at a time, for processors whose vector unit has no set.
using Lanes = float;
using Ints = std::uint32_t;
constexpr std::size_t laneStep = 1;

Lanes fromBits(std::uint32_t bits) {
    return std::bit_cast<float>(bits);
}
std::uint32_t bitsOf(Lanes a) {
    return std::bit_cast<std::uint32_t>(a);
}
Lanes maskOf(bool value) {
    return fromBits(value ? ~0u : 0u);
}

Lanes load(const float* from) {
    return *from;
}
void store(float* to, Lanes a) {
    *to = a;
}
Lanes all(float value) {
    return value;
}
Lanes allOnes() {
    return maskOf(true);
}
Lanes add(Lanes a, Lanes b) {
    return a + b;
}
Lanes subtract(Lanes a, Lanes b) {
    return a - b;
}
Lanes multiply(Lanes a, Lanes b) {
    return a * b;
}
Lanes divide(Lanes a, Lanes b) {
    return a / b;
}
Lanes squareRoot(Lanes a) {
    return std::sqrt(a);
}
Lanes minimum(Lanes a, Lanes b) {
    return arithmetic::minimum(a, b);
}
Lanes maximum(Lanes a, Lanes b) {
    return arithmetic::maximum(a, b);
}
Lanes both(Lanes a, Lanes b) {
    return fromBits(bitsOf(a) & bitsOf(b));
}
Lanes either(Lanes a, Lanes b) {
    return fromBits(bitsOf(a) | bitsOf(b));
}
Lanes differing(Lanes a, Lanes b) {
    return fromBits(bitsOf(a) ^ bitsOf(b));
}
Lanes without(Lanes mask, Lanes b) {
    return fromBits(~bitsOf(mask) & bitsOf(b));
}
Lanes equal(Lanes a, Lanes b) {
    return maskOf(a == b);
}
Lanes notEqual(Lanes a, Lanes b) {
    return maskOf(a != b);
}
Lanes less(Lanes a, Lanes b) {
    return maskOf(a < b);
}
Lanes lessOrEqual(Lanes a, Lanes b) {
    return maskOf(a <= b);
}
bool anySet(Lanes mask) {
    return bitsOf(mask) != 0;
}
// Only of numbers that an integer holds.
Ints truncated(Lanes a) {
    return static_cast<Ints>(a);
}
Lanes toFloats(Ints a) {
    return static_cast<Lanes>(a);
}
Lanes roundedDown(Lanes a) {
    return std::floor(a);
}
Lanes roundedUp(Lanes a) {
    return std::ceil(a);
}

Ints loadInts(const unsigned char* from) {
    Ints value;
    std::memcpy(&value, from, 4);
    return value;
}
void storeInts(unsigned char* to, Ints a) {
    std::memcpy(to, &a, 4);
}
Ints allInts(std::uint32_t value) {
    return value;
}
Ints countedFrom(std::int32_t first) {
    return static_cast<Ints>(first);
}
Ints bothBits(Ints a, Ints b) {
    return a & b;
}
Ints eitherBits(Ints a, Ints b) {
    return a | b;
}
Ints withoutBits(Ints mask, Ints b) {
    return ~mask & b;
}
template <int bits>
Ints shiftedRight(Ints a) {
    return a >> bits;
}
template <int bits>
Ints shiftedLeft(Ints a) {
    return a << bits;
}

#include "plush/shader/batch_loops.h"

}  // namespace

constinit const BatchKernels plainBatchKernels = makeKernels();

}  // namespace kelmora::plush_shader::detail
