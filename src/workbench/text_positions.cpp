#include "workbench/text_positions.h"

#include <algorithm>

namespace kelmora {
namespace {

struct Character {
    std::uint32_t bytes = 1;
    std::uint32_t units = 1;
};

Character characterAt(std::string_view text, std::size_t at) {
    const auto first = static_cast<unsigned char>(text[at]);
    const std::uint32_t bytes = first >= 0xF0 && first < 0xF8   ? 4
                                : first >= 0xE0 && first < 0xF0 ? 3
                                : first >= 0xC0 && first < 0xE0 ? 2
                                                                : 1;
    for (std::uint32_t i = 1; i < bytes; ++i)
        if (at + i >= text.size() || (static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80) return {};
    return {bytes, bytes == 4 ? 2u : 1u};
}

}  // namespace

TextPositions::TextPositions(std::string_view text) : text_(text), starts_{0} {
    for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1))
        starts_.push_back(static_cast<std::uint32_t>(at + 1));
}

std::size_t TextPositions::lineStart(std::uint32_t line) const {
    return line < starts_.size() ? starts_[line] : text_.size();
}

TextPosition TextPositions::at(std::size_t offset) const {
    offset = std::min(offset, text_.size());
    const auto next = std::upper_bound(starts_.begin(), starts_.end(), offset);
    TextPosition position{static_cast<std::uint32_t>(next - starts_.begin()) - 1, 0};
    for (std::size_t at = *(next - 1); at < offset;) {
        const Character character = characterAt(text_, at);
        if (at + character.bytes > offset) break;
        at += character.bytes;
        position.column += character.units;
    }
    return position;
}

std::size_t TextPositions::offset(TextPosition position) const {
    if (position.line >= starts_.size()) return text_.size();
    std::size_t at = starts_[position.line];
    std::size_t end = std::min(text_.find('\n', at), text_.size());
    if (end > at && end < text_.size() && text_[end - 1] == '\r') --end;
    std::uint32_t column = 0;
    while (at < end) {
        const Character character = characterAt(text_, at);
        column += character.units;
        if (column > position.column) break;
        at += character.bytes;
    }
    return at;
}

}  // namespace kelmora
