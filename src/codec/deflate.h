#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace vh::png {

// A raw deflate stream of the bytes, for archives: matches are looked for over the whole window, the codes
// are the fixed ones, and blocks that would grow are stored.
std::vector<unsigned char> deflate(std::span<const unsigned char> bytes);

}  // namespace vh::png
