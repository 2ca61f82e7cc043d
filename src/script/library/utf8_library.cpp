#include "script/library/library.h"
#include "script/numbers.h"

namespace kelmora {
namespace {

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Length of the character at `at`, or 0 when the bytes there are no UTF-8.
std::size_t characterLength(const std::string& text, std::size_t at) {
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

std::int64_t fromEnd(std::int64_t position, std::size_t size) {
    return position < 0 ? static_cast<std::int64_t>(size) + position + 1 : position;
}

// Characters that start between the bytes i and j; nil and the bad byte's position for broken text.
Variable len(VesperScript&, Arguments arguments) {
    require(!arguments.empty() && arguments.size() <= 3 && arguments[0].isString(),
            "utf8['len'](s[, i[, j]]) requires a string");
    const std::string& text = arguments[0].text();
    std::int64_t at = fromEnd(arguments.size() > 1 ? toInt(arguments[1]) : 1, text.size()) - 1;
    const std::int64_t last = fromEnd(arguments.size() > 2 ? toInt(arguments[2]) : -1, text.size()) - 1;
    if (at < 0) at = 0;
    std::int32_t count = 0;
    while (at <= last && at < static_cast<std::int64_t>(text.size())) {
        const std::size_t length = characterLength(text, static_cast<std::size_t>(at));
        if (length == 0)
            return Variable::makeMulti({Variable(), Variable::integer(static_cast<std::int32_t>(at + 1))});
        at += static_cast<std::int64_t>(length);
        ++count;
    }
    return Variable::integer(count);
}

// Byte position at which the n-th character counted from byte i starts; nil when there is none.
Variable offset(VesperScript&, Arguments arguments) {
    require((arguments.size() == 2 || arguments.size() == 3) && arguments[0].isString(),
            "utf8['offset'](s, n[, i]) requires a string and a number");
    const std::string& text = arguments[0].text();
    const auto size = static_cast<std::int64_t>(text.size());
    std::int64_t n = toInt(arguments[1]);
    std::int64_t at = fromEnd(arguments.size() > 2 ? toInt(arguments[2]) : (n > 0 ? 1 : -1), text.size()) - 1;
    if (arguments.size() < 3 && n <= 0) at = size;
    if (at < 0 || at > size) return {};
    const auto continues = [&](std::int64_t position) {
        return position < size && isContinuation(text[static_cast<std::size_t>(position)]);
    };
    if (n == 0) {
        while (at > 0 && continues(at)) --at;
        return Variable::integer(static_cast<std::int32_t>(at + 1));
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
    return Variable::integer(static_cast<std::int32_t>(at + 1));
}

constexpr LibraryEntry entries[] = {{"len", len}, {"offset", offset}};

}  // namespace

std::span<const LibraryEntry> utf8Library() {
    return entries;
}

}  // namespace kelmora
