#include "font/text_lines.h"

#include <bit>

namespace kelmora {
namespace {

constexpr std::uint32_t replacement = 0xFFFD;

unsigned byteAt(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

bool isContinuation(unsigned byte) {
    return (byte & 0xC0) == 0x80;
}

}  // namespace

std::uint32_t nextCodepoint(std::string_view text, std::size_t& at) {
    const unsigned lead = byteAt(text, at++);
    if (lead < 0x80) return lead;
    const auto length = static_cast<std::size_t>(std::countl_one(static_cast<unsigned char>(lead)));
    if (length < 2 || length > 4 || text.size() - at < length - 1) return replacement;
    std::uint32_t codepoint = lead & (0x7Fu >> length);
    for (std::size_t i = 0; i + 1 < length; ++i) {
        const unsigned next = byteAt(text, at + i);
        if (!isContinuation(next)) return replacement;
        codepoint = codepoint << 6 | (next & 0x3F);
    }
    at += length - 1;
    return codepoint;
}

std::vector<std::uint32_t> decodeUtf8(std::string_view text) {
    std::vector<std::uint32_t> codepoints;
    codepoints.reserve(text.size());
    for (std::size_t at = 0; at < text.size();) codepoints.push_back(nextCodepoint(text, at));
    return codepoints;
}

std::vector<std::vector<std::uint32_t>> splitLines(const std::vector<std::uint32_t>& codepoints) {
    std::vector<std::vector<std::uint32_t>> lines(1);
    for (const std::uint32_t codepoint : codepoints) {
        if (codepoint == '\n') {
            lines.emplace_back();
        } else if (codepoint != '\r') {
            lines.back().push_back(codepoint);
        }
    }
    return lines;
}

}  // namespace kelmora
