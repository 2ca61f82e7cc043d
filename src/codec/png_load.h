#pragma once

#include "codec/inflate.h"
#include "codec/png.h"

namespace vh::png {

// Reads a still or animated PNG file. `image` is untouched on failure.
[[nodiscard]] bool load_png(ByteSpan file, Image& image);

}  // namespace vh::png
