#pragma once

#include <cstdint>
#include <string>

namespace kelmora {

// The checksum that stands beside a save file.
std::int32_t calculateChecksum(const std::string& text);

}  // namespace kelmora
