#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "codec/row_filter.h"

namespace vh::png {

// Filters rows of 4-byte pixels with each of the five filters and keeps the one whose bytes, read as signed,
// are smallest in sum; of equals, the first.
class RowFilterer {
public:
    explicit RowFilterer(std::size_t row_bytes);

    // The filter byte and the filtered row, good until the next call. `prior` is null for the first row.
    std::span<const unsigned char> filter(const unsigned char* row, const unsigned char* prior);

private:
    std::vector<unsigned char> none_;  // the row above the first
    std::array<std::vector<unsigned char>, FilterCount> candidates_;
};

// Filters one row into `out`, without the filter byte, and returns the sum of the magnitudes.
std::uint64_t filter_row(unsigned filter, const unsigned char* row, const unsigned char* prior,
                         std::size_t row_bytes, unsigned char* out);
// The same byte by byte, on any processor.
std::uint64_t filter_row_plain(unsigned filter, const unsigned char* row, const unsigned char* prior,
                               std::size_t row_bytes, unsigned char* out);

}  // namespace vh::png
