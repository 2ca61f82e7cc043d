#pragma once

#include <algorithm>
#include <string_view>
#include <vector>

namespace kelmora {

// The parts of a text between blanks and line ends. They refer to it.
inline std::vector<std::string_view> wordsOf(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    std::vector<std::string_view> words;
    std::size_t start = text.find_first_not_of(blanks);
    while (start != std::string_view::npos) {
        const std::size_t end = std::min(text.find_first_of(blanks, start), text.size());
        words.push_back(text.substr(start, end - start));
        start = text.find_first_not_of(blanks, end);
    }
    return words;
}

}  // namespace kelmora
