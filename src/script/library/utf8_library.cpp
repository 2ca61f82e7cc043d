#include "script/library/library.h"
#include "script/numbers.h"
#include "text/utf8.h"

namespace kelmora {
namespace {

// Nil and the bad byte's position for broken text.
Variable len(Interpreter&, Arguments arguments) {
    require(!arguments.empty() && arguments.size() <= 3 && arguments[0].isString(),
            "utf8['len'](s[, i[, j]]) requires a string");
    const std::int32_t first = arguments.size() > 1 ? toInt(arguments[1]) : 1;
    const std::int32_t last = arguments.size() > 2 ? toInt(arguments[2]) : -1;
    const utf8::CharacterCount count = utf8::countCharacters(arguments[0].text(), first, last);
    if (count.badByte != 0)
        return Variable::makeMulti({Variable(), Variable::integer(static_cast<std::int32_t>(count.badByte))});
    return Variable::integer(static_cast<std::int32_t>(count.characters));
}

Variable offset(Interpreter&, Arguments arguments) {
    require((arguments.size() == 2 || arguments.size() == 3) && arguments[0].isString(),
            "utf8['offset'](s, n[, i]) requires a string and a number");
    const std::int32_t n = toInt(arguments[1]);
    std::optional<std::int64_t> from;
    if (arguments.size() > 2) from = toInt(arguments[2]);
    const auto found = utf8::characterOffset(arguments[0].text(), n, from);
    return found ? Variable::integer(static_cast<std::int32_t>(*found)) : Variable();
}

constexpr LibraryEntry entries[] = {{"len", len}, {"offset", offset}};

}  // namespace

std::span<const LibraryEntry> utf8Library() {
    return entries;
}

}  // namespace kelmora
