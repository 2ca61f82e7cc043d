#pragma once

#include <cstdint>
#include <span>

namespace vh::png {

// Adler-32 as a zlib stream ends with. Pass the result back as `adler` to continue over further bytes.
std::uint32_t adler32(std::span<const unsigned char> bytes, std::uint32_t adler = 1);

// The same sum byte by byte, on any processor.
std::uint32_t adler32_portable(std::span<const unsigned char> bytes, std::uint32_t adler = 1);

}  // namespace vh::png
