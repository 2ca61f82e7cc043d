#include <chrono>
#include <cmath>

#include "base/number_parse.h"
#include "rwby/library/library.h"
#include "rwby/map_object.h"
#include "rwby/operations.h"

namespace vesper::ruby {
namespace {

RubyValue print(RubyVM& vm, Arguments arguments) {
    std::string line;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (i > 0) line += '\t';
        line += arguments[i].toString();
    }
    line += '\n';
    vm.host().print(line);
    return {};
}

// From the first call on, so that it fits the scripts' integers.
RubyValue timeMs(RubyVM&, Arguments) {
    using Clock = std::chrono::steady_clock;
    static const Clock::time_point start = Clock::now();
    const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
    return RubyValue::integer(passed.count());
}

RubyValue toS(RubyVM&, Arguments arguments) {
    return arguments[0].isString() ? arguments[0] : RubyValue::text(arguments[0].toString());
}

RubyValue typeOf(RubyVM&, Arguments arguments) {
    return RubyValue::text(rubyValueTypeName(arguments[0].type()));
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

int readBase(Arguments arguments, const char* message) {
    const std::int64_t base = arguments.size() > 1 ? arguments[1].asInteger() : 10;
    require(base >= 2 && base <= 36, message);
    return static_cast<int>(base);
}

int digitValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'z') return c - 'a' + 10;
    if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
    return 36;
}

// The integer at the text's beginning, its sign included; how much of the text it took. Held to 64 bits.
std::int64_t leadingInteger(std::string_view text, int base, std::size_t& taken) {
    const bool isNegative = text.starts_with('-');
    std::size_t at = isNegative || text.starts_with('+') ? 1 : 0;
    const std::size_t first = at;
    std::int64_t value = 0;
    bool isTooLarge = false;
    for (; at < text.size() && digitValue(text[at]) < base; ++at) {
        const int digit = digitValue(text[at]);
        isTooLarge = isTooLarge || __builtin_mul_overflow(value, base, &value) ||
                     __builtin_sub_overflow(value, digit, &value);
    }
    taken = at > first ? at : 0;
    if (isTooLarge) return isNegative ? INT64_MIN : INT64_MAX;
    if (isNegative) return value;
    return value == INT64_MIN ? INT64_MAX : -value;
}

// How much of the text's beginning reads as a decimal number.
std::size_t numberLength(std::string_view text) {
    const auto digits = [&](std::size_t at) {
        while (at < text.size() && text[at] >= '0' && text[at] <= '9') ++at;
        return at;
    };
    const std::size_t first = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    std::size_t end = digits(first);
    if (end == first) return 0;
    if (end + 1 < text.size() && text[end] == '.' && digits(end + 1) > end + 1) end = digits(end + 1);
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        std::size_t exponent = end + 1;
        if (exponent < text.size() && (text[exponent] == '-' || text[exponent] == '+')) ++exponent;
        if (digits(exponent) > exponent) end = digits(exponent);
    }
    return end;
}

double numberOf(std::string_view text) {
    double value = 0;
    if (text.starts_with('+')) text.remove_prefix(1);
    const bool fits = kelmora::parseDoubleStrict(std::string(text), value);
    return fits || std::isinf(value) || value == value ? value : 0;
}

RubyValue toI(RubyVM&, Arguments arguments) {
    const int base = readBase(arguments, "to_i base must be between 2 and 36");
    if (arguments[0].isNil()) return RubyValue::integer(0);
    if (!arguments[0].isString()) return RubyValue::integer(arguments[0].asInteger());
    std::size_t taken = 0;
    return RubyValue::integer(leadingInteger(trimmed(arguments[0].asString()), base, taken));
}

RubyValue toF(RubyVM&, Arguments arguments) {
    if (arguments[0].isNil()) return RubyValue::number(0);
    if (!arguments[0].isString()) return RubyValue::number(arguments[0].asFloat());
    const std::string_view text = trimmed(arguments[0].asString());
    const std::size_t length = numberLength(text);
    return RubyValue::number(length == 0 ? 0 : numberOf(text.substr(0, length)));
}

// Nil for what is no number as a whole.
RubyValue toNumber(RubyVM&, Arguments arguments) {
    const int base = readBase(arguments, "to_number base must be between 2 and 36");
    if (arguments[0].isNumeric()) return arguments[0];
    if (!arguments[0].isString()) return {};
    const std::string_view text = trimmed(arguments[0].asString());
    std::size_t taken = 0;
    const std::int64_t whole = leadingInteger(text, base, taken);
    const bool fits = whole != INT64_MAX && whole != INT64_MIN;
    if (!text.empty() && taken == text.size() && (fits || base != 10)) return RubyValue::integer(whole);
    if (base != 10 || text.empty() || numberLength(text) != text.size()) return {};
    return taken == text.size() ? RubyValue::number(numberOf(text)) : numericResult(numberOf(text));
}

// Values are counted: there is nothing to collect.
RubyValue collectGarbage(RubyVM&, Arguments) {
    return {};
}

RubyValue load(RubyVM& vm, Arguments arguments) {
    return vm.compileFunction(arguments[0].asString(), "<load>");
}

RubyValue len(RubyVM&, Arguments arguments) {
    const RubyValue& value = arguments[0];
    std::size_t size = 0;
    if (value.isString()) {
        size = value.stringObject().size();
    } else if (value.isArray()) {
        size = value.items().size();
    } else if (value.isMap()) {
        size = value.mapObject().size();
    } else {
        throw std::runtime_error("len expects a string, array, or map");
    }
    return RubyValue::integer(static_cast<std::int64_t>(size));
}

RubyValue error(RubyVM&, Arguments arguments) {
    throw std::runtime_error(arguments[0].toString());
}

constexpr LibraryEntry entries[] = {
    {"print", print, atLeast(0)},
    {"time_ms", timeMs, exactly(0)},
    {"to_s", toS, exactly(1)},
    {"type_of", typeOf, exactly(1)},
    {"to_i", toI, between(1, 2)},
    {"to_f", toF, exactly(1)},
    {"to_number", toNumber, between(1, 2)},
    {"collect_garbage", collectGarbage, exactly(0)},
    {"load", load, exactly(1)},
    {"len", len, exactly(1)},
    {"error", error, exactly(1), FunctionKind::Error},
    {"pcall", nullptr, atLeast(1), FunctionKind::Pcall},  // the machine's own
};

}  // namespace

std::span<const LibraryEntry> valueLibrary() {
    return entries;
}

}  // namespace vesper::ruby
