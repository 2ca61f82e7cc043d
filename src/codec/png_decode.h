#pragma once

#include <span>

#include "base/byte_buffer.h"
#include "codec/png_expand.h"

namespace vh::png {

// Decodes one whole picture's data, interlaced or not, to RGBA of the header's size.
[[nodiscard]] bool decode_png_frame(const Header& header, std::span<const ByteSpan> spans,
                                    const DecodeTables& tables, kelmora::ByteBuffer& output);

}  // namespace vh::png
