#pragma once

#include "codec/png.h"
#include "codec/xcf_structure.h"

namespace vh::png {

// Reads a layered working file as one picture of its canvas's size: visible layers laid over each other from
// the bottom up, whatever their modes; masks and channels are ignored. `image` is untouched on failure.
[[nodiscard]] bool load_xcf(ByteSpan file, Image& image);

}  // namespace vh::png
