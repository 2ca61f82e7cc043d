#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kelmora::utf8 {

bool isContinuation(char byte);
// Length of the character at `at`, or 0 when the bytes there are no UTF-8.
std::size_t characterLength(std::string_view text, std::size_t at);

// Characters that start between the bytes i and j, which count from 1 or from the end. For broken text
// `badByte` is the 1-based position of the first bad byte, else 0.
struct CharacterCount {
    std::int64_t characters = 0;
    std::size_t badByte = 0;
};
CharacterCount countCharacters(std::string_view text, std::int64_t i = 1, std::int64_t j = -1);

// 1-based byte position at which the n-th character counted from byte i starts; nothing when there is none.
std::optional<std::int64_t> characterOffset(std::string_view text, std::int64_t n,
                                            std::optional<std::int64_t> i = {});

}  // namespace kelmora::utf8
