#include "codec/crc32.h"

#include <array>
#include <cstddef>

#include "base/cpu_features.h"
#include "codec/load_store.h"

namespace vh::png {
namespace {

constexpr std::uint32_t polynomial = 0xEDB88320u;  // bits in reflected order
constexpr std::size_t slices = 16;

using SliceTables = std::array<std::array<std::uint32_t, 256>, slices>;

// tables[k][b] is the sum of byte b followed by k zero bytes.
constexpr SliceTables make_tables() {
    SliceTables tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t crc = byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? polynomial : 0);
        tables[0][byte] = crc;
    }
    for (std::size_t k = 1; k < slices; ++k) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t crc = tables[k - 1][byte];
            tables[k][byte] = (crc >> 8) ^ tables[0][crc & 0xFF];
        }
    }
    return tables;
}

constexpr SliceTables tables = make_tables();

// Adds four bytes, the lowest first, that stand `offset` bytes before the end of a block of 16.
std::uint32_t slice_word(std::uint32_t word, std::size_t offset) {
    return tables[offset - 1][word & 0xFF] ^ tables[offset - 2][(word >> 8) & 0xFF] ^
           tables[offset - 3][(word >> 16) & 0xFF] ^ tables[offset - 4][word >> 24];
}

std::uint32_t update_by_tables(const unsigned char* data, std::size_t size, std::uint32_t state) {
    for (; size >= slices; data += slices, size -= slices) {
        state = slice_word(load_u32(data) ^ state, 16) ^ slice_word(load_u32(data + 4), 12) ^
                slice_word(load_u32(data + 8), 8) ^ slice_word(load_u32(data + 12), 4);
    }
    for (; size > 0; ++data, --size) state = (state >> 8) ^ tables[0][(state ^ *data) & 0xFF];
    return state;
}

#if defined(KELMORA_X86)

constexpr std::size_t foldBlock = 64;

// x^n modulo the polynomial in reflected order, placed as the folding multiplications need it.
constexpr std::uint64_t fold_constant(unsigned n) {
    std::uint32_t value = 0x80000000u;
    for (unsigned i = 0; i < n; ++i) value = (value >> 1) ^ ((value & 1) != 0 ? polynomial : 0);
    return std::uint64_t{value} << 1;
}

[[gnu::target("pclmul,sse4.1")]] inline __m128i fold(__m128i sum, __m128i data, __m128i constants) {
    const __m128i low = _mm_clmulepi64_si128(sum, constants, 0x00);
    const __m128i high = _mm_clmulepi64_si128(sum, constants, 0x11);
    return _mm_xor_si128(_mm_xor_si128(low, high), data);
}

inline __m128i constant_pair(std::uint64_t low, std::uint64_t high) {
    return _mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(low));
}

// Folds whole blocks of 64 bytes, at least one, into 16 bytes with the same remainder; tables do the rest.
[[gnu::target("pclmul,sse4.1")]] std::uint32_t update_by_folding(const unsigned char* data, std::size_t size,
                                                                 std::uint32_t state) {
    constexpr std::uint64_t four_low = fold_constant(4 * 128 + 32), four_high = fold_constant(4 * 128 - 32);
    constexpr std::uint64_t one_low = fold_constant(128 + 32), one_high = fold_constant(128 - 32);
    const __m128i by_four = constant_pair(four_low, four_high);
    const __m128i by_one = constant_pair(one_low, one_high);
    __m128i sums[4];
    for (std::size_t i = 0; i < 4; ++i) sums[i] = load_vector(data + 16 * i);
    sums[0] = _mm_xor_si128(sums[0], _mm_cvtsi32_si128(static_cast<int>(state)));
    for (data += foldBlock, size -= foldBlock; size >= foldBlock; data += foldBlock, size -= foldBlock) {
        for (std::size_t i = 0; i < 4; ++i) sums[i] = fold(sums[i], load_vector(data + 16 * i), by_four);
    }
    __m128i sum = sums[0];
    for (std::size_t i = 1; i < 4; ++i) sum = fold(sum, sums[i], by_one);
    unsigned char folded[16];
    store_vector(folded, sum);
    return update_by_tables(data, size, update_by_tables(folded, sizeof folded, 0));
}

#endif

}  // namespace

std::uint32_t crc32_portable(std::span<const unsigned char> bytes, std::uint32_t crc) {
    return ~update_by_tables(bytes.data(), bytes.size(), ~crc);
}

std::uint32_t crc32(std::span<const unsigned char> bytes, std::uint32_t crc) {
#if defined(KELMORA_X86)
    if (bytes.size() >= foldBlock && kelmora::hasCarrylessMultiply())
        return ~update_by_folding(bytes.data(), bytes.size(), ~crc);
#endif
    return crc32_portable(bytes, crc);
}

}  // namespace vh::png
