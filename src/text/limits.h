#pragma once

#include <cstddef>

namespace kelmora {

// The longest text that a library function of any language makes.
constexpr std::size_t maximumTextSize = std::size_t{1} << 28;

}  // namespace kelmora
