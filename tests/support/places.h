#pragma once

#include <string>

namespace kelmora {

// The checkout, and where the build puts its executables.
const std::string& sourceFolder();
const std::string& binFolder();

}  // namespace kelmora
