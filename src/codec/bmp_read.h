#pragma once

#include <cstdint>

#include "codec/inflate.h"
#include "codec/png.h"

namespace vh::png {

bool has_bmp_signature(ByteSpan file);

// Reads BMP files without compression or with bit fields. `image` is untouched on failure.
[[nodiscard]] bool load_bmp(ByteSpan file, Image& image);

// The channel that `mask` cuts out of a sample, scaled to 0..255 and rounded. Wraps in 32 bits for masks of
// more than 24 bits; a mask with gaps gives more than a byte.
std::uint32_t scale_masked_sample(std::uint32_t value, std::uint32_t mask);

}  // namespace vh::png
