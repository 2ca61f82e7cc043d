#pragma once

#include "codec/inflate.h"
#include "codec/png.h"

namespace vh::png {

// TGA has no signature: true for a file that ends with the format's footer, and for a header whose fields
// make sense together.
bool looks_like_tga(const unsigned char* data, unsigned size);

// Reads grey, mapped and true-colour TGA files, plain or run-length coded. `image` is untouched on failure.
[[nodiscard]] bool load_tga(ByteSpan file, Image& image);

}  // namespace vh::png
