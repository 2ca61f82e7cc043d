#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kelmora {

// Start and past-the-end offset of the bytes i to j of a text, counted from 1 or, when negative, from the
// end, and held to the text. Empty (0 to 0) when none is left.
struct ByteRange {
    std::size_t first = 0;
    std::size_t last = 0;
};

inline ByteRange byteRange(std::size_t textSize, std::int64_t i, std::int64_t j) {
    const auto size = static_cast<std::int64_t>(textSize);
    if (i < 0) i += size + 1;
    if (j < 0) j += size + 1;
    i = std::max<std::int64_t>(i, 1);
    j = std::min(j, size);
    if (i > j) return {};
    return {static_cast<std::size_t>(i - 1), static_cast<std::size_t>(j)};
}

}  // namespace kelmora
