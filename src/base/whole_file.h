#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelmora {

// The whole content of a file, or nothing when it cannot be opened or read to its end.
[[nodiscard]] std::optional<std::string> readWholeFile(const std::string& path);
[[nodiscard]] std::optional<std::vector<unsigned char>> readWholeFileBytes(const std::string& path);

// Replaces the file's content. False when the file cannot be opened, written or closed.
[[nodiscard]] bool writeWholeFile(const std::string& path, std::string_view content);
[[nodiscard]] bool writeWholeFileBytes(const std::string& path, std::span<const unsigned char> content);

}  // namespace kelmora
