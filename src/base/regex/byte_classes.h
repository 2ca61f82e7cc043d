#pragma once

#include <optional>
#include <string_view>

#include "base/regex/byte_set.h"

namespace kelmora::regex {

constexpr unsigned lowerCase(unsigned byte) {
    return byte >= 'A' && byte <= 'Z' ? byte + 32 : byte;
}
constexpr unsigned upperCase(unsigned byte) {
    return byte >= 'a' && byte <= 'z' ? byte - 32 : byte;
}

// The members of a named class such as "alpha" or "w", in any case.
std::optional<ByteSet> classNamed(std::string_view name, bool ignoreCase);

// The byte that a collating name such as "hyphen" stands for.
std::optional<unsigned> byteNamed(std::string_view name);

const ByteSet& wordBytes();

}  // namespace kelmora::regex
