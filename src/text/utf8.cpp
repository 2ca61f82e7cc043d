#include "text/utf8.h"

#include <algorithm>

namespace kelmora::utf8 {
namespace {

std::int64_t fromEnd(std::int64_t position, std::size_t size) {
    return position < 0 ? static_cast<std::int64_t>(size) + position + 1 : position;
}

}  // namespace

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::size_t characterLength(std::string_view text, std::size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    std::size_t length = 0;
    if (lead < 0x80) length = 1;
    if (lead >= 0xC2 && lead <= 0xDF) length = 2;
    if (lead >= 0xE0 && lead <= 0xEF) length = 3;
    if (lead >= 0xF0 && lead <= 0xF4) length = 4;
    if (length == 0 || at + length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (!isContinuation(text[at + i])) return 0;
    if (length == 1) return 1;
    const auto second = static_cast<unsigned char>(text[at + 1]);
    const bool overlong = (lead == 0xE0 && second < 0xA0) || (lead == 0xF0 && second < 0x90);
    const bool outside = (lead == 0xED && second > 0x9F) || (lead == 0xF4 && second > 0x8F);
    return overlong || outside ? 0 : length;
}

CharacterCount countCharacters(std::string_view text, std::int64_t i, std::int64_t j) {
    std::int64_t at = std::max<std::int64_t>(fromEnd(i, text.size()) - 1, 0);
    const std::int64_t last = fromEnd(j, text.size()) - 1;
    CharacterCount count;
    while (at <= last && at < static_cast<std::int64_t>(text.size())) {
        const std::size_t length = characterLength(text, static_cast<std::size_t>(at));
        if (length == 0) return {count.characters, static_cast<std::size_t>(at) + 1};
        at += static_cast<std::int64_t>(length);
        ++count.characters;
    }
    return count;
}

std::optional<std::int64_t> characterOffset(std::string_view text, std::int64_t n,
                                            std::optional<std::int64_t> i) {
    const auto size = static_cast<std::int64_t>(text.size());
    std::int64_t at = i || n > 0 ? fromEnd(i.value_or(1), text.size()) - 1 : size;
    if (at < 0 || at > size) return {};
    const auto continues = [&](std::int64_t position) {
        return position < size && isContinuation(text[static_cast<std::size_t>(position)]);
    };
    if (n == 0) {
        while (at > 0 && continues(at)) --at;
        return at + 1;
    }
    if (continues(at)) return {};
    for (; n < 0 && at > 0; ++n) {
        do --at;
        while (at > 0 && continues(at));
    }
    for (; n > 1 && at < size; --n) {
        do ++at;
        while (continues(at));
    }
    if (n != 0 && n != 1) return {};
    return at + 1;
}

}  // namespace kelmora::utf8
