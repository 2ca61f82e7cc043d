#include "base/checksum.h"

#include <bit>

namespace kelmora {

std::int32_t calculateChecksum(const std::string& text) {
    std::uint32_t sum = 0;
    std::uint32_t position = 0;
    for (const char byte : text) {
        ++position;
        sum = static_cast<unsigned char>(byte) * position + std::rotr(sum, 29);
    }
    return static_cast<std::int32_t>(sum);
}

}  // namespace kelmora
