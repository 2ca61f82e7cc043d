#pragma once

#include <cstdint>
#include <span>

namespace vh::png {

// CRC-32 as PNG chunks carry it. Pass the result back as `crc` to continue over further bytes.
std::uint32_t crc32(std::span<const unsigned char> bytes, std::uint32_t crc = 0);

// The same sum by tables alone, on any processor.
std::uint32_t crc32_portable(std::span<const unsigned char> bytes, std::uint32_t crc = 0);

}  // namespace vh::png
