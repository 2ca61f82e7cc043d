#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vesper::lua {

// What an image holds; the texts are borrowed from its bytes.
struct BytecodeContent {
    std::string_view chunkName;
    std::string_view source;
};

std::vector<std::uint8_t> buildBytecode(const BytecodeContent& content);
// Raises std::runtime_error for an image that is damaged. Bytes behind the source mean nothing.
BytecodeContent readBytecode(std::span<const std::uint8_t> image);
bool isBytecode(std::string_view content);

}  // namespace vesper::lua
