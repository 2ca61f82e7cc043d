#pragma once

#include <string>
#include <string_view>

namespace kelmora {

// ASCII letters alone change; every other byte stays.
std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);

}  // namespace kelmora
