#pragma once

#include <charconv>
#include <concepts>
#include <string>
#include <string_view>

namespace kelmora {

// Whole-text parses: nothing may be left over, nothing may overflow, and no blank or plus sign may lead.
template <std::integral Integer>
[[nodiscard]] bool parseIntStrict(std::string_view text, Integer& value, int base = 10) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value, base);
    return result.ec == std::errc() && result.ptr == end;
}

// What the C library's parse takes whole, leading blanks and hexadecimal floats included.
[[nodiscard]] bool parseFloatStrict(const std::string& text, float& value);
[[nodiscard]] bool parseDoubleStrict(const std::string& text, double& value);

}  // namespace kelmora
