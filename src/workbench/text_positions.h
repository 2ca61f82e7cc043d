#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace kelmora {

// Lines from 0, columns in UTF-16 units from 0, as editors count.
struct TextPosition {
    std::uint32_t line = 0;
    std::uint32_t column = 0;

    bool operator==(const TextPosition&) const = default;
};

// Takes byte offsets of a text to its positions and back. A position behind a line's end is its end, one
// behind the text the text's end, one within a character its start. Bytes that are no UTF-8 count as a unit
// each. The text is borrowed.
class TextPositions {
public:
    explicit TextPositions(std::string_view text);

    TextPosition at(std::size_t offset) const;
    std::size_t offset(TextPosition position) const;
    std::size_t lineStart(std::uint32_t line) const;

private:
    std::string_view text_;
    std::vector<std::uint32_t> starts_;
};

}  // namespace kelmora
