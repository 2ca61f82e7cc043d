#include <algorithm>

#include "rwby/library/library.h"
#include "text/byte_range.h"
#include "text/letter_case.h"
#include "text/limits.h"
#include "text/printf_format.h"
#include "text/utf8.h"

namespace vesper::ruby {
namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";

RubyValue upper(RubyVM&, Arguments arguments) {
    return RubyValue::text(kelmora::upperCase(arguments[0].asString()));
}

RubyValue lower(RubyVM&, Arguments arguments) {
    return RubyValue::text(kelmora::lowerCase(arguments[0].asString()));
}

RubyValue sub(RubyVM&, Arguments arguments) {
    const std::string_view text = arguments[0].asString();
    const auto range = kelmora::byteRange(text.size(), arguments[1].asInteger(),
                                          arguments.size() > 2 ? arguments[2].asInteger() : -1);
    if (range.last - range.first == 1) return RubyValue::character(text[range.first]);
    return RubyValue::text(text.substr(range.first, range.last - range.first));
}

// The byte at a position, or an array of those between two.
RubyValue byte(RubyVM&, Arguments arguments) {
    const std::string_view text = arguments[0].asString();
    const std::int64_t first = arguments.size() > 1 ? arguments[1].asInteger() : 1;
    const auto range =
        kelmora::byteRange(text.size(), first, arguments.size() > 2 ? arguments[2].asInteger() : first);
    RubyItems bytes;
    for (std::size_t i = range.first; i < range.last; ++i)
        bytes.push_back(RubyValue::integer(static_cast<unsigned char>(text[i])));
    if (arguments.size() > 2) return RubyValue::array(std::move(bytes));
    return bytes.empty() ? RubyValue() : bytes[0];
}

RubyValue charFunction(RubyVM&, Arguments arguments) {
    std::string text;
    for (const RubyValue& value : arguments) {
        const std::int64_t code = value.asInteger();
        require(code >= 0 && code <= 255, "string_char code must be between 0 and 255");
        text += static_cast<char>(code);
    }
    return RubyValue::text(text);
}

class FormatValues : public kelmora::FormatArguments {
public:
    explicit FormatValues(Arguments values) : values_(values) {}

    bool next() override { return ++at_ < values_.size(); }
    std::int64_t integer() override { return values_[at_].asInteger(); }
    std::uint64_t bits() override { return static_cast<std::uint64_t>(integer()); }
    double number() override { return values_[at_].asFloat(); }
    std::string text() override { return values_[at_].toString(); }

private:
    Arguments values_;
    std::size_t at_ = 0;  // of the format itself
};

std::string faultText(const kelmora::FormatFailure& failure) {
    switch (failure.fault) {
        case kelmora::FormatFault::Incomplete:
            return "unterminated format token";
        case kelmora::FormatFault::MissingArgument:
            return "missing argument for format string";
        case kelmora::FormatFault::Unsupported:
            return std::string("unsupported format token %") + failure.conversion;
        default:
            return "the text is too large";
    }
}

RubyValue format(RubyVM&, Arguments arguments) {
    FormatValues values(arguments);
    try {
        return RubyValue::text(kelmora::formatText(arguments[0].asString(), values));
    } catch (const kelmora::FormatFailure& failure) {
        throw std::runtime_error(faultText(failure));
    }
}

RubyValue rep(RubyVM&, Arguments arguments) {
    const std::string_view unit = arguments[0].asString();
    const std::int64_t count = arguments[1].asInteger();
    const std::string_view separator = arguments.size() > 2 ? arguments[2].asString() : "";
    if (count <= 0) return RubyValue::text("");
    const std::uint64_t piece = unit.size() + separator.size();
    const auto pieces = static_cast<std::uint64_t>(count);
    require(piece == 0 || pieces <= kelmora::maximumTextSize / piece, "string_rep result is too large");
    std::string text;
    if (piece == 0) return RubyValue::text(text);
    text.reserve(static_cast<std::size_t>(piece * pieces));
    for (std::uint64_t i = 0; i < pieces; ++i) {
        if (i > 0) text += separator;
        text += unit;
    }
    return RubyValue::text(text);
}

// Between separators; without one between runs of blanks.
RubyValue split(RubyVM&, Arguments arguments) {
    const std::string_view text = arguments[0].asString();
    RubyItems parts;
    const auto add = [&](std::size_t first, std::size_t end) {
        parts.push_back(RubyValue::text(text.substr(first, end - first)));
    };
    if (arguments.size() == 1) {
        for (std::size_t at = text.find_first_not_of(blanks); at != std::string_view::npos;) {
            const std::size_t end = std::min(text.find_first_of(blanks, at), text.size());
            add(at, end);
            at = text.find_first_not_of(blanks, end);
        }
        return RubyValue::array(std::move(parts));
    }
    const std::string_view separator = arguments[1].asString();
    if (separator.empty()) {
        for (const char c : text) parts.push_back(RubyValue::character(c));
        return RubyValue::array(std::move(parts));
    }
    std::size_t at = 0;
    for (std::size_t end = text.find(separator); end != std::string_view::npos;
         end = text.find(separator, at)) {
        add(at, end);
        at = end + separator.size();
    }
    add(at, text.size());
    return RubyValue::array(std::move(parts));
}

RubyValue stripped(const RubyValue& value, bool left, bool right) {
    const std::string_view text = value.asString();
    const std::size_t first = left ? std::min(text.find_first_not_of(blanks), text.size()) : 0;
    const std::size_t last = right ? text.find_last_not_of(blanks) + 1 : text.size();  // npos + 1 is 0
    return RubyValue::text(first < last ? text.substr(first, last - first) : std::string_view());
}

RubyValue strip(RubyVM&, Arguments arguments) {
    return stripped(arguments[0], true, true);
}

RubyValue lstrip(RubyVM&, Arguments arguments) {
    return stripped(arguments[0], true, false);
}

RubyValue rstrip(RubyVM&, Arguments arguments) {
    return stripped(arguments[0], false, true);
}

RubyValue reverse(RubyVM&, Arguments arguments) {
    const std::string_view text = arguments[0].asString();
    return RubyValue::text(std::string(text.rbegin(), text.rend()));
}

RubyValue include(RubyVM&, Arguments arguments) {
    return RubyValue::boolean(arguments[0].asString().find(arguments[1].asString()) !=
                              std::string_view::npos);
}

RubyValue startWith(RubyVM&, Arguments arguments) {
    return RubyValue::boolean(arguments[0].asString().starts_with(arguments[1].asString()));
}

RubyValue endWith(RubyVM&, Arguments arguments) {
    return RubyValue::boolean(arguments[0].asString().ends_with(arguments[1].asString()));
}

// Nil for a text that is no UTF-8.
RubyValue utf8Len(RubyVM&, Arguments arguments) {
    const auto count = kelmora::utf8::countCharacters(arguments[0].asString());
    return count.badByte != 0 ? RubyValue() : RubyValue::integer(count.characters);
}

constexpr LibraryEntry entries[] = {
    {"string_upper", upper, exactly(1)},       {"string_lower", lower, exactly(1)},
    {"string_sub", sub, between(2, 3)},        {"string_byte", byte, between(1, 3)},
    {"string_char", charFunction, atLeast(0)}, {"string_format", format, atLeast(1)},
    {"string_rep", rep, between(2, 3)},        {"string_split", split, between(1, 2)},
    {"string_strip", strip, exactly(1)},       {"string_lstrip", lstrip, exactly(1)},
    {"string_rstrip", rstrip, exactly(1)},     {"string_reverse", reverse, exactly(1)},
    {"string_include?", include, exactly(2)},  {"string_start_with?", startWith, exactly(2)},
    {"string_end_with?", endWith, exactly(2)}, {"utf8_len", utf8Len, exactly(1)},
};

}  // namespace

std::span<const LibraryEntry> stringLibrary() {
    return entries;
}

}  // namespace vesper::ruby
