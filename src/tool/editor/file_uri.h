#pragma once

#include <string>
#include <string_view>

namespace kelmora {

// The path of a `file:` address; empty for other addresses.
std::string pathOfUri(std::string_view uri);
std::string uriOfPath(const std::string& path);

}  // namespace kelmora
