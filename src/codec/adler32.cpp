#include "codec/adler32.h"

#include <algorithm>
#include <cstddef>

#include "codec/load_store.h"

namespace vh::png {
namespace {

constexpr std::uint32_t modulus = 65521;
constexpr std::size_t longestRun = 5552;  // bytes until the second sum could pass 32 bits

struct Sums {
    std::uint32_t a;  // of the bytes
    std::uint32_t b;  // of every value a has had
};

void add_bytes(Sums& sums, const unsigned char* data, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        sums.a += data[i];
        sums.b += sums.a;
    }
}

template <typename AddRun>
std::uint32_t sum_in_runs(std::span<const unsigned char> bytes, std::uint32_t adler, AddRun add_run) {
    Sums sums{adler & 0xFFFF, adler >> 16};
    while (!bytes.empty()) {
        const std::size_t size = std::min(bytes.size(), longestRun);
        add_run(sums, bytes.data(), size);
        sums.a %= modulus;
        sums.b %= modulus;
        bytes = bytes.subspan(size);
    }
    return sums.b << 16 | sums.a;
}

#if defined(KELMORA_X86)

constexpr std::size_t blockSize = 32;

std::uint32_t total_of_lanes(__m128i lanes) {
    lanes = _mm_add_epi32(lanes, _mm_shuffle_epi32(lanes, _MM_SHUFFLE(1, 0, 3, 2)));
    lanes = _mm_add_epi32(lanes, _mm_shuffle_epi32(lanes, _MM_SHUFFLE(2, 3, 0, 1)));
    return static_cast<std::uint32_t>(_mm_cvtsi128_si32(lanes));
}

// Byte i of a block of 32 counts 32 - i times in the second sum, and so does `a` as it stood before the
// block.
[[gnu::target("ssse3")]] void add_blocks(Sums& sums, const unsigned char* data, std::size_t size) {
    const __m128i first_weights =
        _mm_setr_epi8(32, 31, 30, 29, 28, 27, 26, 25, 24, 23, 22, 21, 20, 19, 18, 17);
    const __m128i second_weights = _mm_setr_epi8(16, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1);
    const __m128i zero = _mm_setzero_si128();
    const __m128i ones = _mm_set1_epi16(1);
    const std::size_t blocks = size / blockSize;
    __m128i a = zero;
    __m128i b = zero;
    __m128i a_before_blocks = zero;
    for (std::size_t i = 0; i < blocks; ++i) {
        const __m128i first = load_vector(data + blockSize * i);
        const __m128i second = load_vector(data + blockSize * i + 16);
        a_before_blocks = _mm_add_epi32(a_before_blocks, a);
        a = _mm_add_epi32(a, _mm_add_epi32(_mm_sad_epu8(first, zero), _mm_sad_epu8(second, zero)));
        const __m128i weighted =
            _mm_add_epi16(_mm_maddubs_epi16(first, first_weights), _mm_maddubs_epi16(second, second_weights));
        b = _mm_add_epi32(b, _mm_madd_epi16(weighted, ones));
    }
    b = _mm_add_epi32(b, _mm_slli_epi32(a_before_blocks, 5));
    sums.b += sums.a * static_cast<std::uint32_t>(blocks * blockSize) + total_of_lanes(b);
    sums.a += total_of_lanes(a);
    add_bytes(sums, data + blocks * blockSize, size % blockSize);
}

#endif

}  // namespace

std::uint32_t adler32_portable(std::span<const unsigned char> bytes, std::uint32_t adler) {
    return sum_in_runs(bytes, adler, add_bytes);
}

std::uint32_t adler32(std::span<const unsigned char> bytes, std::uint32_t adler) {
#if defined(KELMORA_X86)
    if (kelmora::hasByteShuffle()) return sum_in_runs(bytes, adler, add_blocks);
#endif
    return adler32_portable(bytes, adler);
}

}  // namespace vh::png
