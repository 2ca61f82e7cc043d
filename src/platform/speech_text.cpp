#include "platform/speech_text.h"

#include <algorithm>
#include <cstdint>

namespace kelmora {
namespace {

constexpr std::size_t longestLanguage = 16;

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xc0) == 0x80;
}

}  // namespace

std::string speechLine(std::string_view text) {
    std::size_t length = std::min(text.size(), longestSpeech);
    if (length < text.size())
        while (length > 0 && isContinuation(text[length])) --length;
    std::string line(text.substr(0, length));
    std::ranges::replace_if(
        line, [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }, ' ');
    return line;
}

std::string_view speechLanguage(std::string_view language) {
    const auto mayStand = [](char c) { return isLetter(c) || (c >= '0' && c <= '9') || c == '-'; };
    if (language.empty() || language.size() > longestLanguage || !isLetter(language.front())) return "";
    return std::ranges::all_of(language, mayStand) ? language : "";
}

std::string base64(std::string_view bytes) {
    constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i)
            group = group << 8 | (i < count ? static_cast<unsigned char>(bytes[at + i]) : 0u);
        for (std::size_t i = 0; i < 4; ++i) text += i <= count ? digits[group >> (18 - 6 * i) & 63] : '=';
    }
    return text;
}

}  // namespace kelmora
