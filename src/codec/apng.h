#pragma once

#include "base/byte_buffer.h"
#include "codec/png_expand.h"

namespace vh::png {

// Lays the frames of an animation on one another, in order and never disposing: one still picture of the
// header's size.
[[nodiscard]] bool decode_apng_squashed(const ParsedPng& parsed, const DecodeTables& tables,
                                        kelmora::ByteBuffer& output);

}  // namespace vh::png
