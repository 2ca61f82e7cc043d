#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelmora {

// Number of an interned name. Equal names have equal numbers, so that running code never compares text.
using NameId = std::uint32_t;
inline constexpr NameId noName = 0xFFFFFFFFu;

NameId internName(std::string_view name);
const std::string& nameText(NameId name);

}  // namespace kelmora
