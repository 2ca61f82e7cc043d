#include "base/regex/byte_classes.h"

#include <algorithm>
#include <array>
#include <string>

namespace kelmora::regex {
namespace {

ByteSet ranges(std::string_view bounds) {
    ByteSet set;
    for (std::size_t i = 0; i + 1 < bounds.size(); i += 2)
        set.addRange(static_cast<unsigned char>(bounds[i]), static_cast<unsigned char>(bounds[i + 1]));
    return set;
}

struct ClassName {
    std::string_view name;
    std::string_view bounds;  // first and last byte of each range
};
using namespace std::string_view_literals;
constexpr std::array classNames{
    ClassName{"d", "09"},
    ClassName{"w", "09AZ__az"},
    ClassName{"s", "\t\r  "},
    ClassName{"alnum", "09AZaz"},
    ClassName{"alpha", "AZaz"},
    ClassName{"blank", "\t\t  "},
    ClassName{"cntrl", "\0\x1F\x7F\x7F"sv},
    ClassName{"digit", "09"},
    ClassName{"graph", "!~"},
    ClassName{"lower", "az"},
    ClassName{"print", " ~"},
    ClassName{"punct", "!/:@[`{~"},
    ClassName{"space", "\t\r  "},
    ClassName{"upper", "AZ"},
    ClassName{"xdigit", "09AFaf"},
};

// Of the bytes 0 to 127; an empty name is the letter itself.
constexpr std::array<std::string_view, 128> byteNames{"NUL",
                                                      "SOH",
                                                      "STX",
                                                      "ETX",
                                                      "EOT",
                                                      "ENQ",
                                                      "ACK",
                                                      "alert",
                                                      "backspace",
                                                      "tab",
                                                      "newline",
                                                      "vertical-tab",
                                                      "form-feed",
                                                      "carriage-return",
                                                      "SO",
                                                      "SI",
                                                      "DLE",
                                                      "DC1",
                                                      "DC2",
                                                      "DC3",
                                                      "DC4",
                                                      "NAK",
                                                      "SYN",
                                                      "ETB",
                                                      "CAN",
                                                      "EM",
                                                      "SUB",
                                                      "ESC",
                                                      "IS4",
                                                      "IS3",
                                                      "IS2",
                                                      "IS1",
                                                      "space",
                                                      "exclamation-mark",
                                                      "quotation-mark",
                                                      "number-sign",
                                                      "dollar-sign",
                                                      "percent-sign",
                                                      "ampersand",
                                                      "apostrophe",
                                                      "left-parenthesis",
                                                      "right-parenthesis",
                                                      "asterisk",
                                                      "plus-sign",
                                                      "comma",
                                                      "hyphen",
                                                      "period",
                                                      "slash",
                                                      "zero",
                                                      "one",
                                                      "two",
                                                      "three",
                                                      "four",
                                                      "five",
                                                      "six",
                                                      "seven",
                                                      "eight",
                                                      "nine",
                                                      "colon",
                                                      "semicolon",
                                                      "less-than-sign",
                                                      "equals-sign",
                                                      "greater-than-sign",
                                                      "question-mark",
                                                      "commercial-at",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "left-square-bracket",
                                                      "backslash",
                                                      "right-square-bracket",
                                                      "circumflex",
                                                      "underscore",
                                                      "grave-accent",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "",
                                                      "left-curly-bracket",
                                                      "vertical-line",
                                                      "right-curly-bracket",
                                                      "tilde",
                                                      "DEL"};

}  // namespace

std::optional<ByteSet> classNamed(std::string_view name, bool ignoreCase) {
    std::string lower(name);
    for (char& c : lower) c = static_cast<char>(lowerCase(static_cast<unsigned char>(c)));
    if (ignoreCase && (lower == "lower" || lower == "upper")) lower = "alpha";
    const auto found = std::find_if(classNames.begin(), classNames.end(),
                                    [&](const ClassName& entry) { return entry.name == lower; });
    if (found == classNames.end()) return std::nullopt;
    return ranges(found->bounds);
}

std::optional<unsigned> byteNamed(std::string_view name) {
    if (name.size() == 1) {
        const unsigned byte = static_cast<unsigned char>(name[0]);
        if (lowerCase(byte) == upperCase(byte)) return std::nullopt;
        return byte;
    }
    if (name.empty()) return std::nullopt;
    const auto found = std::find(byteNames.begin(), byteNames.end(), name);
    if (found == byteNames.end()) return std::nullopt;
    return static_cast<unsigned>(found - byteNames.begin());
}

const ByteSet& wordBytes() {
    static const ByteSet set = ranges("09AZ__az");
    return set;
}

}  // namespace kelmora::regex
