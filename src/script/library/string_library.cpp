#include <algorithm>

#include "script/library/format.h"
#include "script/library/library.h"
#include "script/numbers.h"
#include "script/table_object.h"
#include "text/byte_range.h"
#include "text/letter_case.h"
#include "text/limits.h"
#include "text/pattern.h"
#include "text/replacement.h"

namespace kelmora {
namespace {

bool isNumber(const Variable& value) {
    return value.isInt() || value.isFloat();
}

Variable length(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1, "string['len'](s) requires exactly 1 argument");
    require(arguments[0].isString(), "string['len'](s) expects a string");
    return Variable::integer(static_cast<std::int32_t>(arguments[0].text().size()));
}

Variable upper(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1 && arguments[0].isString(),
            "string['upper'](s) requires exactly 1 string argument");
    return Variable::text(upperCase(arguments[0].text()));
}

Variable lower(Interpreter&, Arguments arguments) {
    require(arguments.size() == 1 && arguments[0].isString(),
            "string['lower'](s) requires exactly 1 string argument");
    return Variable::text(lowerCase(arguments[0].text()));
}

Variable sub(Interpreter&, Arguments arguments) {
    require((arguments.size() == 2 || arguments.size() == 3) && arguments[0].isString() &&
                isNumber(arguments[1]) && (arguments.size() == 2 || isNumber(arguments[2])),
            "string['sub'](s, i[, j]) requires a string and 1-2 numeric indices");
    const std::string& text = arguments[0].text();
    const ByteRange range =
        byteRange(text.size(), toInt(arguments[1]), arguments.size() == 3 ? toInt(arguments[2]) : -1);
    if (range.last - range.first == 1) return Variable::character(text[range.first]);
    return Variable::text(text.substr(range.first, range.last - range.first));
}

Variable byte(Interpreter&, Arguments arguments) {
    require(!arguments.empty() && arguments.size() <= 3 && arguments[0].isString(),
            "string['byte'](s[, i[, j]]) requires a string");
    const std::string& text = arguments[0].text();
    const std::int32_t first = arguments.size() > 1 ? toInt(arguments[1]) : 1;
    const ByteRange range = byteRange(text.size(), first, arguments.size() > 2 ? toInt(arguments[2]) : first);
    std::vector<Variable> bytes;
    for (std::size_t i = range.first; i < range.last; ++i)
        bytes.push_back(Variable::integer(static_cast<unsigned char>(text[i])));
    return packResults(std::move(bytes));
}

Variable charFunction(Interpreter&, Arguments arguments) {
    std::string text;
    for (const Variable& code : arguments) text += static_cast<char>(toInt(code));
    return Variable::text(std::move(text));
}

Variable rep(Interpreter&, Arguments arguments) {
    require((arguments.size() == 2 || arguments.size() == 3) && arguments[0].isString() &&
                isNumber(arguments[1]) && (arguments.size() == 2 || arguments[2].isString()),
            "string['rep'](s, n[, sep]) requires a string, count, and optional separator");
    const std::string& unit = arguments[0].text();
    const std::string separator = arguments.size() == 3 ? arguments[2].text() : std::string();
    const std::int32_t count = toInt(arguments[1]);
    if (count <= 0) return Variable::text("");
    if (std::uint64_t{unit.size() + separator.size()} * static_cast<std::uint64_t>(count) > maximumTextSize)
        throw std::runtime_error("string['rep'](s, n[, sep]): the result is too large");
    std::string text;
    text.reserve((unit.size() + separator.size()) * static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        if (i > 0) text += separator;
        text += unit;
    }
    return Variable::text(std::move(text));
}

Variable captureValue(const std::string& subject, const regex::Capture& capture) {
    if (!capture.tookPart) return {};
    return Variable::text(std::string(capture.in(subject)));
}

// The captures of a match, or the whole match when the pattern has none.
std::vector<Variable> matchValues(const std::string& subject, const regex::Captures& captures) {
    std::vector<Variable> values;
    for (std::size_t i = captures.size() > 1 ? 1 : 0; i < captures.size(); ++i)
        values.push_back(captureValue(subject, captures[i]));
    return values;
}

// Where a search starts: an init of 1 or less is the beginning. False when it lies behind the end.
bool searchStart(Arguments arguments, std::size_t& start) {
    const std::int64_t init = arguments.size() > 2 && !arguments[2].isNot() ? toInt(arguments[2]) : 1;
    start = init <= 1 ? 0 : static_cast<std::size_t>(init - 1);
    return start <= arguments[0].text().size();
}

bool searchFrom(const std::string& subject, const std::string& pattern, std::size_t start,
                regex::Captures& captures) {
    return getCachedGsubPattern(pattern).search(subject, start, captures, patternScratch(),
                                                regex::MatchFlags::ignorePrevious);
}

Variable positions(std::size_t first, std::size_t last, std::vector<Variable> rest = {}) {
    std::vector<Variable> values{Variable::integer(static_cast<std::int32_t>(first + 1)),
                                 Variable::integer(static_cast<std::int32_t>(last))};
    values.insert(values.end(), rest.begin(), rest.end());
    return Variable::makeMulti(std::move(values));
}

Variable find(Interpreter&, Arguments arguments) {
    require(
        arguments.size() >= 2 && arguments.size() <= 4 && arguments[0].isString() && arguments[1].isString(),
        "string['find'](s, pattern[, init[, plain]]) requires a string and a pattern");
    const std::string& subject = arguments[0].text();
    const std::string& pattern = arguments[1].text();
    std::size_t start = 0;
    if (!searchStart(arguments, start)) return {};
    if (arguments.size() == 4 && isTruthy(arguments[3])) {
        const std::size_t at = subject.find(pattern, start);
        return at == std::string::npos ? Variable() : positions(at, at + pattern.size());
    }
    regex::Captures captures;
    if (!searchFrom(subject, pattern, start, captures)) return {};
    std::vector<Variable> rest;
    for (std::size_t i = 1; i < captures.size(); ++i) rest.push_back(captureValue(subject, captures[i]));
    return positions(captures[0].begin, captures[0].end, std::move(rest));
}

Variable match(Interpreter&, Arguments arguments) {
    require((arguments.size() == 2 || arguments.size() == 3) && arguments[0].isString() &&
                arguments[1].isString(),
            "string['match'](s, pattern[, init]) requires a string and a pattern");
    std::size_t start = 0;
    regex::Captures captures;
    if (!searchStart(arguments, start)) return {};
    if (!searchFrom(arguments[0].text(), arguments[1].text(), start, captures)) return {};
    return packResults(matchValues(arguments[0].text(), captures));
}

Variable gmatch(Interpreter&, Arguments arguments) {
    require(arguments.size() == 2 && arguments[0].isString() && arguments[1].isString(),
            "string['gmatch'](s, pattern) requires a string and a pattern");
    const std::string& subject = arguments[0].text();
    regex::MatchIterator matches(getCachedGsubPattern(arguments[1].text()), subject, patternScratch());
    std::vector<Variable> found;
    while (matches.next()) {
        std::vector<Variable> values = matchValues(subject, matches.captures());
        found.push_back(values.size() == 1 ? std::move(values[0]) : Variable::array(std::move(values)));
    }
    return Variable::array(std::move(found));
}

void appendTableReplacement(std::string& out, const TableObject& table, std::string_view matched) {
    const Variable* value = table.find(matched);
    if (!value) throw std::runtime_error("gsub replacement table missing key: " + std::string(matched));
    out += value->toString();
}

// A table of replacements may be written as a list, which is an array.
Variable asReplacementTable(const Variable& replacement) {
    Variable table = replacement;
    promoteArrayVariableToTable(table);
    return table;
}

Variable formatFunction(Interpreter&, Arguments arguments) {
    require(!arguments.empty() && arguments[0].isString(),
            "string['format'](format, ...) requires a format string");
    return Variable::text(formatValues(arguments));
}

constexpr LibraryEntry entries[] = {
    {"gsub", gsubFunction}, {"len", length},        {"upper", upper},           {"lower", lower},
    {"sub", sub},           {"find", find},         {"match", match},           {"gmatch", gmatch},
    {"byte", byte},         {"char", charFunction}, {"format", formatFunction}, {"rep", rep},
};

}  // namespace

Variable gsubFunction(Interpreter&, Arguments arguments) {
    require(arguments.size() == 3, "gsub(string, pattern, replacement) requires exactly 3 arguments");
    require(arguments[0].isString(), "gsub(string, pattern, replacement): first argument must be a string");
    require(arguments[1].isString(),
            "gsub(string, pattern, replacement): second argument must be a string pattern");
    require(arguments[2].isString() || arguments[2].isTable() || arguments[2].isArray(),
            "gsub(string, pattern, replacement): replacement must be a string or table");
    const std::string& subject = arguments[0].text();
    const Variable replacement = asReplacementTable(arguments[2]);
    regex::MatchIterator matches(getCachedGsubPattern(arguments[1].text()), subject, patternScratch());
    std::string out;
    std::size_t copied = 0;
    while (matches.next()) {
        const regex::Capture& whole = matches.match();
        out.append(subject, copied, whole.begin - copied);
        if (replacement.isTable()) {
            appendTableReplacement(out, replacement.table(), whole.in(subject));
        } else {
            appendReplacement(out, replacement.text(), subject, matches.captures());
        }
        copied = whole.end;
        if (out.size() > maximumTextSize)
            throw std::runtime_error("gsub(string, pattern, replacement): the result is too large");
    }
    if (copied == 0 && out.empty()) return arguments[0];
    out.append(subject, copied);
    return Variable::text(std::move(out));
}

std::span<const LibraryEntry> stringLibrary() {
    return entries;
}

}  // namespace kelmora
