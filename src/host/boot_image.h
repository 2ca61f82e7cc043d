#pragma once

#include <span>

namespace kelmora {

// The compiled boot script, which the build puts into the executable.
std::span<const unsigned char> bootImage();

}  // namespace kelmora
