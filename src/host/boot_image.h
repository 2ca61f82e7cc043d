#pragma once

#include <span>

namespace kelmora {

// The compiled boot script, which the build puts into the executable.
std::span<const unsigned char> bootImage();
// Its source, which the build puts into the authors' tool.
std::span<const unsigned char> bootText();

}  // namespace kelmora
