#include <algorithm>

#include "rwby/library/library.h"
#include "rwby/operations.h"
#include "text/limits.h"
#include "text/lua_pattern.h"

namespace vesper::ruby {
namespace {

using kelmora::LuaMatches;
using kelmora::LuaPattern;
using kelmora::regex::Captures;

RubyValue captureValue(const LuaPattern& pattern, std::string_view subject, const Captures& captures,
                       std::size_t index) {
    const kelmora::regex::Capture& capture = captures[index];
    if (index > 0 && pattern.isPosition(index - 1))
        return RubyValue::integer(static_cast<std::int64_t>(capture.begin) + 1);
    return capture.tookPart ? RubyValue::text(capture.in(subject)) : RubyValue();
}

// The match when the pattern has no captures, else what it captured: one value, or an array of several.
RubyValue matchValue(const LuaPattern& pattern, std::string_view subject, const Captures& captures) {
    if (captures.size() <= 2) return captureValue(pattern, subject, captures, captures.size() - 1);
    RubyItems values;
    values.reserve(captures.size() - 1);
    for (std::size_t i = 1; i < captures.size(); ++i)
        values.push_back(captureValue(pattern, subject, captures, i));
    return RubyValue::array(std::move(values));
}

// Where a search begins: positions count from 1 or, below 0, from the end. False behind the text.
bool searchStart(Arguments arguments, std::size_t& start) {
    const auto size = static_cast<std::int64_t>(arguments[0].asString().size());
    std::int64_t position = arguments.size() > 2 && !arguments[2].isNil() ? arguments[2].asInteger() : 1;
    if (position < 0) position = std::max<std::int64_t>(position + size + 1, 1);
    start = static_cast<std::size_t>(std::clamp<std::int64_t>(position - 1, 0, size));
    return position - 1 <= size;
}

RubyItems positions(std::size_t first, std::size_t end) {
    return {RubyValue::integer(static_cast<std::int64_t>(first) + 1),
            RubyValue::integer(static_cast<std::int64_t>(end))};
}

bool isAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isAsciiLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Letters, a hyphen and digits, the search for names like "room-12": by hand, since programs do it often. The
// captures are those of the pattern.
bool findAlphaDashDigitsMatch(std::string_view subject, std::size_t from, Captures& captures) {
    for (std::size_t dash = subject.find('-', from); dash != std::string_view::npos;
         dash = subject.find('-', dash + 1)) {
        std::size_t first = dash;
        while (first > from && isAsciiLetter(subject[first - 1])) --first;
        std::size_t end = dash + 1;
        while (end < subject.size() && isAsciiDigit(subject[end])) ++end;
        if (first == dash || end == dash + 1) continue;
        captures.assign({{first, end, true}, {first, dash, true}, {dash + 1, end, true}});
        return true;
    }
    captures.clear();
    return false;
}

bool searchPattern(const LuaPattern& pattern, std::string_view text, std::string_view subject,
                   std::size_t from, Captures& captures) {
    if (text == "(%a+)%-(%d+)") return findAlphaDashDigitsMatch(subject, from, captures);
    return pattern.search(subject, from, captures);
}

// [start, end, captures...], or nil.
RubyValue find(RubyVM&, Arguments arguments) {
    const std::string_view subject = arguments[0].asString();
    const std::string_view wanted = arguments[1].asString();
    std::size_t start = 0;
    if (!searchStart(arguments, start)) return {};
    if (arguments.size() > 3 && arguments[3].isTruthy()) {
        const std::size_t found = subject.find(wanted, start);
        if (found == std::string_view::npos) return {};
        return RubyValue::array(positions(found, found + wanted.size()));
    }
    const auto compiled = kelmora::cachedLuaPattern(wanted);
    const LuaPattern& pattern = *compiled;
    Captures captures;
    if (!searchPattern(pattern, wanted, subject, start, captures)) return {};
    RubyItems values = positions(captures[0].begin, captures[0].end);
    for (std::size_t i = 1; i < captures.size(); ++i)
        values.push_back(captureValue(pattern, subject, captures, i));
    return RubyValue::array(std::move(values));
}

RubyValue match(RubyVM&, Arguments arguments) {
    const std::string_view subject = arguments[0].asString();
    const std::string_view wanted = arguments[1].asString();
    const auto compiled = kelmora::cachedLuaPattern(wanted);
    std::size_t start = 0;
    Captures captures;
    if (!searchStart(arguments, start) || !searchPattern(*compiled, wanted, subject, start, captures))
        return {};
    return matchValue(*compiled, subject, captures);
}

// An array of all matches.
RubyValue gmatch(RubyVM&, Arguments arguments) {
    const std::string_view subject = arguments[0].asString();
    const auto pattern = kelmora::cachedLuaPattern(arguments[1].asString());
    LuaMatches matches(*pattern, subject);
    RubyItems found;
    while (matches.next()) found.push_back(matchValue(*pattern, subject, matches.captures()));
    return RubyValue::array(std::move(found));
}

// What stands for a match: a map's value for it, what a function makes of its captures, or a text with
// percent forms. Nil and false leave the match as it is.
void appendReplacement(RubyVM& vm, std::string& out, const RubyValue& replacement, const LuaPattern& pattern,
                       std::string_view subject, const Captures& captures) {
    if (replacement.isString()) {
        kelmora::appendLuaReplacement(out, replacement.asString(), pattern, subject, captures);
        return;
    }
    RubyValue value;
    if (replacement.isFunction()) {
        RubyItems values;
        for (std::size_t i = captures.size() > 1 ? 1 : 0; i < captures.size(); ++i)
            values.push_back(captureValue(pattern, subject, captures, i));
        value = vm.call(replacement, values);
    } else if (const RubyValue* known = findInMap(
                   replacement, captureValue(pattern, subject, captures, captures.size() > 1 ? 1 : 0))) {
        value = *known;
    }
    out += value.isTruthy() ? value.toString() : std::string(captures[0].in(subject));
}

// The text with all matches, or so many, replaced.
RubyValue gsub(RubyVM& vm, Arguments arguments) {
    const std::string_view subject = arguments[0].asString();
    const RubyValue& replacement = arguments[2];
    require(replacement.isString() || replacement.isMap() || replacement.isFunction(),
            "string_gsub replacement must be a string, map, or function");
    std::int64_t left = arguments.size() > 3 ? arguments[3].asInteger() : INT64_MAX;
    const auto pattern = kelmora::cachedLuaPattern(arguments[1].asString());
    LuaMatches matches(*pattern, subject);
    std::string out;
    std::size_t copied = 0;
    for (; left > 0 && matches.next(); --left) {
        const kelmora::regex::Capture& whole = matches.captures()[0];
        out.append(subject.substr(copied, whole.begin - copied));
        appendReplacement(vm, out, replacement, *pattern, subject, matches.captures());
        copied = whole.end;
        require(out.size() <= kelmora::maximumTextSize, "the text is too large");
    }
    if (copied == 0 && out.empty()) return arguments[0];
    out.append(subject.substr(copied));
    return RubyValue::text(out);
}

constexpr LibraryEntry entries[] = {
    {"string_find", find, between(2, 4)},
    {"string_match", match, between(2, 3)},
    {"string_gmatch", gmatch, exactly(2)},
    {"string_gsub", gsub, between(3, 4)},
};

}  // namespace

std::span<const LibraryEntry> patternLibrary() {
    return entries;
}

}  // namespace vesper::ruby
