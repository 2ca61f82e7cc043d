#include <algorithm>
#include <unordered_map>

#include "rwby/library/library.h"
#include "rwby/operations.h"
#include "text/limits.h"
#include "text/lua_pattern.h"
#include "text/pattern.h"

namespace vesper::ruby {
namespace {

// Compiled patterns by their text. Programs use few; one that makes them up starts the cache anew.
const kelmora::LuaPattern& cachedPattern(const RubyValue& value) {
    constexpr std::size_t maximumPatterns = 500;
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    static auto& cache = *new std::unordered_map<std::string, kelmora::LuaPattern, Hash, std::equal_to<>>;
    const std::string_view text = value.asString();
    if (const auto found = cache.find(text); found != cache.end()) return found->second;
    kelmora::LuaPattern pattern(text);
    if (cache.size() >= maximumPatterns) cache.clear();
    return cache.emplace(std::string(text), std::move(pattern)).first->second;
}

RubyValue captureValue(std::string_view subject, const kelmora::regex::Capture& capture) {
    return capture.tookPart ? RubyValue::text(capture.in(subject)) : RubyValue();
}

// The match when the pattern has no captures, else what it captured: one value, or an array of several.
RubyValue matchValue(std::string_view subject, const kelmora::regex::Captures& captures) {
    if (captures.size() <= 2) return captureValue(subject, captures.back());
    std::vector<RubyValue> values;
    values.reserve(captures.size() - 1);
    for (std::size_t i = 1; i < captures.size(); ++i) values.push_back(captureValue(subject, captures[i]));
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

std::vector<RubyValue> positions(std::size_t first, std::size_t end) {
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
bool findAlphaDashDigitsMatch(std::string_view subject, std::size_t from,
                              kelmora::regex::Captures& captures) {
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

bool searchPattern(const RubyValue& pattern, std::string_view subject, std::size_t from,
                   kelmora::regex::Captures& captures) {
    if (pattern.asString() == "(%a+)%-(%d+)") return findAlphaDashDigitsMatch(subject, from, captures);
    return cachedPattern(pattern).search(subject, from, captures, kelmora::patternScratch());
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
    kelmora::regex::Captures captures;
    if (!searchPattern(arguments[1], subject, start, captures)) return {};
    std::vector<RubyValue> values = positions(captures[0].begin, captures[0].end);
    for (std::size_t i = 1; i < captures.size(); ++i) values.push_back(captureValue(subject, captures[i]));
    return RubyValue::array(std::move(values));
}

RubyValue match(RubyVM&, Arguments arguments) {
    const std::string_view subject = arguments[0].asString();
    std::size_t start = 0;
    kelmora::regex::Captures captures;
    if (!searchStart(arguments, start) || !searchPattern(arguments[1], subject, start, captures)) return {};
    return matchValue(subject, captures);
}

// An array of all matches.
RubyValue gmatch(RubyVM&, Arguments arguments) {
    const std::string_view subject = arguments[0].asString();
    kelmora::LuaMatches matches(cachedPattern(arguments[1]), subject, kelmora::patternScratch());
    std::vector<RubyValue> found;
    while (matches.next()) found.push_back(matchValue(subject, matches.captures()));
    return RubyValue::array(std::move(found));
}

// What stands for a match: a map's value for it, what a function makes of its captures, or a text with
// percent forms. Nil and false leave the match as it is.
void appendReplacement(RubyVM& vm, std::string& out, const RubyValue& replacement, std::string_view subject,
                       const kelmora::regex::Captures& captures) {
    if (replacement.isString()) {
        kelmora::appendLuaReplacement(out, replacement.asString(), subject, captures);
        return;
    }
    RubyValue value;
    if (replacement.isFunction()) {
        std::vector<RubyValue> values;
        for (std::size_t i = captures.size() > 1 ? 1 : 0; i < captures.size(); ++i)
            values.push_back(captureValue(subject, captures[i]));
        value = vm.call(replacement, values);
    } else if (const RubyValue* known =
                   findInMap(replacement, captureValue(subject, captures[captures.size() > 1 ? 1 : 0]))) {
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
    // A replacing function may search by itself: pattern and memory are this call's own.
    const kelmora::LuaPattern pattern = cachedPattern(arguments[1]);
    kelmora::regex::Scratch own;
    kelmora::LuaMatches matches(pattern, subject, replacement.isFunction() ? own : kelmora::patternScratch());
    std::string out;
    std::size_t copied = 0;
    for (; left > 0 && matches.next(); --left) {
        const kelmora::regex::Capture& whole = matches.captures()[0];
        out.append(subject.substr(copied, whole.begin - copied));
        appendReplacement(vm, out, replacement, subject, matches.captures());
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
