#pragma once

#include <cstddef>

namespace vh::png {

// Undoes one row's filter. `prior` is the row above once unfiltered, or null for none; `out` may be `raw`
// itself. False for a filter type above 4.
bool unfilter_row_to(unsigned filter, unsigned char* out, const unsigned char* raw,
                     const unsigned char* prior, std::size_t row_bytes, std::size_t bytes_per_pixel);

// The same byte by byte, on any processor.
bool unfilter_row_to_plain(unsigned filter, unsigned char* out, const unsigned char* raw,
                           const unsigned char* prior, std::size_t row_bytes, std::size_t bytes_per_pixel);

}  // namespace vh::png
