#include "lua/library/string_library.h"

#include <algorithm>

#include "lua/iterator_state.h"
#include "lua/library/arguments.h"
#include "lua/library/library.h"
#include "text/byte_range.h"
#include "text/letter_case.h"
#include "text/lua_pattern.h"
#include "text/printf_format.h"

namespace vesper::lua {
namespace {

constexpr std::string_view blanks = " \t\n\r\v\f";

void giveText(NativeCall& call, std::string_view text) {
    call.give(Value::text(text));
}

void len(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    call.give(Value::integer(static_cast<std::int64_t>(requireString(call, 0).size())));
}

void lower(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    giveText(call, kelmora::lowerCase(requireString(call, 0)));
}

void upper(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    giveText(call, kelmora::upperCase(requireString(call, 0)));
}

void sub(NativeCall& call) {
    requireArgumentCount(call, 2, 3);
    const std::string_view text = requireString(call, 0);
    const auto range = kelmora::byteRange(text.size(), requireInteger(call, 1), optionalInteger(call, 2, -1));
    giveText(call, text.substr(range.first, range.last - range.first));
}

void byte(NativeCall& call) {
    requireArgumentCount(call, 1, 3);
    const std::string_view text = requireString(call, 0);
    const std::int64_t first = optionalInteger(call, 1, 1);
    const auto range = kelmora::byteRange(text.size(), first, optionalInteger(call, 2, first));
    if (range.last - range.first > 100'000) failCall(call, "too many bytes");
    for (std::size_t i = range.first; i < range.last; ++i)
        call.give(Value::integer(static_cast<unsigned char>(text[i])));
}

void charFunction(NativeCall& call) {
    std::string text;
    for (std::size_t i = 0; i < call.count(); ++i) {
        const std::int64_t code = requireInteger(call, i);
        if (code < 0 || code > 255) failArgument(call, i, "a byte");
        text += static_cast<char>(code);
    }
    giveText(call, text);
}

void rep(NativeCall& call) {
    requireArgumentCount(call, 2, 3);
    const std::string_view unit = requireString(call, 0);
    const std::string_view separator = optionalString(call, 2, "");
    const std::int64_t count = std::max<std::int64_t>(requireInteger(call, 1), 0);
    const std::uint64_t step = unit.size() + separator.size();
    if (step == 0 || count == 0) return giveText(call, "");
    if (static_cast<std::uint64_t>(count) > UINT32_MAX) failCall(call, "the result is too large");
    const std::uint64_t size = step * static_cast<std::uint64_t>(count) - separator.size();
    checkTextSize(static_cast<std::size_t>(std::min<std::uint64_t>(size, SIZE_MAX)));
    Value made(StringObject::makeEmpty(static_cast<std::size_t>(size)));
    StringObject& text = made.string();
    text.append(unit);
    if (count > 1) text.append(separator);
    if (count > 1) text.append(unit);
    // What stands behind the first separator repeats: ever longer parts of it are copied.
    while (text.size() < size)
        text.append(text.view().substr(
            unit.size(),
            std::min<std::size_t>(text.size() - unit.size(), static_cast<std::size_t>(size) - text.size())));
    call.give(std::move(made));
}

void reverse(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    const std::string_view text = requireString(call, 0);
    giveText(call, std::string(text.rbegin(), text.rend()));
}

// Takes bytes of a set, blanks unless one is given, off one end or both.
void stripEnds(NativeCall& call, bool left, bool right) {
    requireArgumentCount(call, 1, 2);
    std::string_view text = requireString(call, 0);
    const std::string_view set = optionalString(call, 1, blanks);
    if (left) text.remove_prefix(std::min(text.find_first_not_of(set), text.size()));
    if (right) text = text.substr(0, text.find_last_not_of(set) + 1);
    giveText(call, text);
}

void strip(NativeCall& call) {
    stripEnds(call, true, true);
}
void lstrip(NativeCall& call) {
    stripEnds(call, true, false);
}
void rstrip(NativeCall& call) {
    stripEnds(call, false, true);
}

void contains(NativeCall& call) {
    requireArgumentCount(call, 2, 2);
    call.give(Value::boolean(requireString(call, 0).find(requireString(call, 1)) != std::string_view::npos));
}

void startsWith(NativeCall& call) {
    requireArgumentCount(call, 2, 2);
    call.give(Value::boolean(requireString(call, 0).starts_with(requireString(call, 1))));
}

void endsWith(NativeCall& call) {
    requireArgumentCount(call, 2, 2);
    call.give(Value::boolean(requireString(call, 0).ends_with(requireString(call, 1))));
}

// Without a separator at runs of blanks; with one at each of its places.
void split(NativeCall& call) {
    requireArgumentCount(call, 1, 2);
    std::string_view text = requireString(call, 0);
    Value parts = call.machine().makeTable();
    std::int64_t count = 0;
    const auto add = [&](std::string_view part) { parts.table().set(++count, Value::text(part)); };
    if (call[1].isNil()) {
        for (;;) {
            text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
            if (text.empty()) break;
            const std::size_t end = std::min(text.find_first_of(blanks), text.size());
            add(text.substr(0, end));
            text.remove_prefix(end);
        }
    } else {
        const std::string_view separator = requireString(call, 1);
        if (separator.empty()) failCall(call, "the separator is empty");
        for (std::size_t at = 0; (at = text.find(separator)) != std::string_view::npos;) {
            add(text.substr(0, at));
            text.remove_prefix(at + separator.size());
        }
        add(text);
    }
    call.give(std::move(parts));
}

using kelmora::LuaMatches;
using kelmora::LuaPattern;

std::shared_ptr<const LuaPattern> requirePattern(const NativeCall& call, std::size_t position) {
    const std::string_view text = requireString(call, position);
    try {
        return kelmora::cachedLuaPattern(text);
    } catch (const std::runtime_error&) {
        throw std::runtime_error("gsub: invalid regex pattern '" + std::string(text) + "'");
    }
}

Value captureValue(const LuaPattern& pattern, std::string_view subject,
                   const kelmora::regex::Captures& captures, std::size_t index) {
    const kelmora::regex::Capture& capture = captures[index];
    if (index > 0 && pattern.isPosition(index - 1))
        return Value::integer(static_cast<std::int64_t>(capture.begin) + 1);
    return capture.tookPart ? Value::text(capture.in(subject)) : Value();
}

// The captures, or the whole match when the pattern has none.
template <typename Give>
void eachResult(const LuaPattern& pattern, std::string_view subject, const kelmora::regex::Captures& captures,
                Give give) {
    for (std::size_t i = captures.size() > 1 ? 1 : 0; i < captures.size(); ++i)
        give(captureValue(pattern, subject, captures, i));
}

// Where a search starts, counted from the end when negative. False when it lies behind the end.
bool searchStart(const NativeCall& call, std::size_t size, std::size_t& start) {
    std::int64_t init = optionalInteger(call, 2, 1);
    if (init < 0) init += static_cast<std::int64_t>(size) + 1;
    start = init <= 1 ? 0 : static_cast<std::size_t>(std::min<std::int64_t>(init - 1, INT32_MAX));
    return start <= size;
}

void givePlace(NativeCall& call, std::size_t begin, std::size_t end) {
    call.give(Value::integer(static_cast<std::int64_t>(begin) + 1));
    call.give(Value::integer(static_cast<std::int64_t>(end)));
}

void find(NativeCall& call) {
    requireArgumentCount(call, 2, 4);
    const std::string_view subject = requireString(call, 0);
    const std::string_view pattern = requireString(call, 1);
    std::size_t start = 0;
    if (!searchStart(call, subject.size(), start)) return call.give({});
    if (call[3].isTruthy() || kelmora::isPlainPattern(pattern)) {
        const std::size_t at = subject.find(pattern, start);
        if (at == std::string_view::npos) return call.give({});
        return givePlace(call, at, at + pattern.size());
    }
    const auto compiled = requirePattern(call, 1);
    kelmora::regex::Captures captures;
    if (!compiled->search(subject, start, captures)) return call.give({});
    givePlace(call, captures[0].begin, captures[0].end);
    for (std::size_t i = 1; i < captures.size(); ++i)
        call.give(captureValue(*compiled, subject, captures, i));
}

void match(NativeCall& call) {
    requireArgumentCount(call, 2, 3);
    const std::string_view subject = requireString(call, 0);
    const auto pattern = requirePattern(call, 1);
    std::size_t start = 0;
    kelmora::regex::Captures captures;
    if (!searchStart(call, subject.size(), start) || !pattern->search(subject, start, captures))
        return call.give({});
    eachResult(*pattern, subject, captures, [&](Value value) { call.give(std::move(value)); });
}

class MatchState final : public IteratorState {
public:
    MatchState(Value subject, std::shared_ptr<const LuaPattern> pattern)
        : subject_(std::move(subject)),
          pattern_(std::move(pattern)),
          matches_(*pattern_, subject_.letters()) {}
    bool next(MultiValue& values) override {
        if (!matches_.next()) return false;
        eachResult(*pattern_, subject_.letters(), matches_.captures(),
                   [&](Value value) { values.push(std::move(value)); });
        return true;
    }

private:
    Value subject_;
    std::shared_ptr<const LuaPattern> pattern_;
    LuaMatches matches_;
};

void gmatch(NativeCall& call) {
    requireArgumentCount(call, 2, 2);
    requireString(call, 0);
    call.give(Value(new MatchState(call[0], requirePattern(call, 1))));
}

// What one match is replaced by: a text with %0 to %9, a table's entry or a function's result.
class Replacement {
public:
    explicit Replacement(NativeCall& call) : call_(call), replacement_(call[2]) {
        const bool fits = replacement_.isString() || replacement_.isNumber() || replacement_.isTable() ||
                          replacement_.isFunction();
        if (!fits) failArgument(call, 2, "a string, table or function");
        if (replacement_.isNumber()) replacement_ = Value::text(replacement_.toString());
    }

    void append(std::string& out, const LuaPattern& pattern, std::string_view subject,
                const kelmora::regex::Captures& captures) {
        if (replacement_.isString()) return appendText(out, pattern, subject, captures);
        Value found;
        if (replacement_.isTable()) {
            found = replacement_.table().get(
                captureValue(pattern, subject, captures, captures.size() > 1 ? 1 : 0));
        } else {
            std::vector<Value> arguments;
            eachResult(pattern, subject, captures,
                       [&](Value value) { arguments.push_back(std::move(value)); });
            found = call_.machine().callValue(replacement_, arguments).first();
        }
        if (!found.isTruthy()) {
            out += captures[0].in(subject);
        } else if (found.isString() || found.isNumber()) {
            out += found.toString();
        } else {
            failCall(call_, "the replacement is a " + std::string(describeValueType(found)) + " value");
        }
    }

private:
    void appendText(std::string& out, const LuaPattern& pattern, std::string_view subject,
                    const kelmora::regex::Captures& captures) const {
        try {
            kelmora::appendLuaReplacement(out, replacement_.letters(), pattern, subject, captures);
        } catch (const std::runtime_error& error) {
            failCall(call_, error.what());
        }
    }

    NativeCall& call_;
    Value replacement_;
};

void gsub(NativeCall& call) {
    requireArgumentCount(call, 3, 4);
    const std::string_view subject = requireString(call, 0);
    const auto pattern = requirePattern(call, 1);
    Replacement replacement(call);
    const std::int64_t most = optionalInteger(call, 3, INT64_MAX);
    LuaMatches matches(*pattern, subject);
    std::string out;
    std::size_t copied = 0;
    std::int64_t count = 0;
    while (count < most && matches.next()) {
        const kelmora::regex::Capture& whole = matches.captures()[0];
        out += subject.substr(copied, whole.begin - copied);
        replacement.append(out, *pattern, subject, matches.captures());
        copied = whole.end;
        ++count;
        checkTextSize(out.size());
    }
    out += subject.substr(copied);
    call.give(count == 0 ? call[0] : Value::text(out));
    call.give(Value::integer(count));
}

class CallFormat final : public kelmora::FormatArguments {
public:
    explicit CallFormat(const NativeCall& call) : call_(call) {}
    bool next() override { return ++position_ < call_.count(); }
    std::int64_t integer() override { return requireInteger(call_, position_); }
    std::uint64_t bits() override { return static_cast<std::uint64_t>(integer()); }
    double number() override { return requireNumber(call_, position_); }
    std::string text() override { return call_[position_].toString(); }

private:
    const NativeCall& call_;
    std::size_t position_ = 0;
};

[[noreturn]] void failFormat(const NativeCall& call, const kelmora::FormatFailure& failure) {
    const std::string specifier = std::string("%") + failure.conversion;
    switch (failure.fault) {
        case kelmora::FormatFault::Incomplete:
            failCall(call, "incomplete format specifier");
        case kelmora::FormatFault::Unsupported:
            failCall(call, "unsupported specifier " + specifier);
        case kelmora::FormatFault::MissingArgument:
            failCall(call, "missing argument for format specifier " + specifier);
        case kelmora::FormatFault::TooLarge:
            failCall(call, "the result is too large");
        default:
            failCall(call, "failed to format value");
    }
}

void format(NativeCall& call) {
    requireAtLeast(call, 1);
    CallFormat arguments(call);
    try {
        giveText(call, kelmora::formatText(requireString(call, 0), arguments));
    } catch (const kelmora::FormatFailure& failure) {
        failFormat(call, failure);
    }
}

constexpr LibraryEntry entries[] = {
    {"len", len},           {"lower", lower},       {"upper", upper},
    {"sub", sub},           {"find", find},         {"match", match},
    {"gmatch", gmatch},     {"gsub", gsub},         {"format", format},
    {"byte", byte},         {"char", charFunction}, {"rep", rep},
    {"reverse", reverse},   {"strip", strip},       {"lstrip", lstrip},
    {"rstrip", rstrip},     {"contains", contains}, {"startswith", startsWith},
    {"endswith", endsWith}, {"split", split},       {"pack", packText},
    {"unpack", unpackText},
};

}  // namespace

void bindStringLibrary(Interpreter& machine) {
    const Value table = bindTable(machine, "string", entries);
    // Methods of texts stay what they are when a script changes its `string`.
    Value methods = machine.makeTable();
    for (const LibraryEntry& entry : entries) {
        const Value name = machine.strings().intern(entry.name);
        methods.table().set(name.string(), table.table().get(name));
    }
    machine.setStringLibrary(std::move(methods));
}

}  // namespace vesper::lua
