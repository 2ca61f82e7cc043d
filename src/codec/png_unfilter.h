#pragma once

#include <cstddef>

namespace vh::png {

// Undoes one row's filter. `prior` is the row above once unfiltered, or null for none; `out` may be `raw`
// itself. False for a filter type above 4.
bool unfilter_row_to(unsigned filter, unsigned char* out, const unsigned char* raw,
                     const unsigned char* prior, std::size_t row_bytes, std::size_t bytes_per_pixel);

// Undoes the Paeth filter of two rows, the second below the first: faster than one after the other where
// `prefers_paeth_pairs`.
void unfilter_paeth_pair(unsigned char* const out[2], const unsigned char* const raw[2],
                         const unsigned char* prior, std::size_t row_bytes, std::size_t bytes_per_pixel);
bool prefers_paeth_pairs(std::size_t bytes_per_pixel);

// The same as `unfilter_row_to` byte by byte, on any processor.
bool unfilter_row_to_plain(unsigned filter, unsigned char* out, const unsigned char* raw,
                           const unsigned char* prior, std::size_t row_bytes, std::size_t bytes_per_pixel);

}  // namespace vh::png
