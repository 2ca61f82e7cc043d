#include <chrono>
#include <ctime>

#include "base/number_parse.h"
#include "lua/iterator_state.h"
#include "lua/library/arguments.h"
#include "lua/library/library.h"
#include "lua/operations.h"

namespace vesper::lua {
namespace {

void print(NativeCall& call) {
    std::string line;
    for (const Value& value : call.arguments()) {
        if (&value != call.arguments().data()) line += '\t';
        line += value.toString();
    }
    line += '\n';
    call.machine().host().print(line);
}

void toStringFunction(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    call.give(call[0].isString() ? call[0] : Value::text(call[0].toString()));
}

void time(NativeCall& call) {
    requireArgumentCount(call, 0, 0);
    call.give(Value::integer(static_cast<std::int64_t>(std::time(nullptr))));
}

void timeMs(NativeCall& call) {
    requireArgumentCount(call, 0, 0);
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    call.give(Value::integer(std::chrono::duration_cast<std::chrono::milliseconds>(now).count()));
}

std::string_view withoutBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t\n\r\v\f";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Of digits and letters of the base behind an optional minus; wraps in 64 bits.
bool parseInBase(std::string_view text, std::uint64_t base, std::int64_t& value) {
    const bool isNegative = text.starts_with('-');
    if (isNegative) text.remove_prefix(1);
    if (text.empty()) return false;
    std::uint64_t bits = 0;
    for (const char c : text) {
        std::uint64_t digit = base;
        if (c >= '0' && c <= '9') digit = static_cast<std::uint64_t>(c - '0');
        if ((c | 0x20) >= 'a' && (c | 0x20) <= 'z') digit = static_cast<std::uint64_t>((c | 0x20) - 'a' + 10);
        if (digit >= base) return false;
        bits = bits * base + digit;
    }
    value = static_cast<std::int64_t>(isNegative ? 0 - bits : bits);
    return true;
}

bool parseHexadecimal(std::string_view text, std::int64_t& value) {
    const bool isNegative = text.starts_with('-');
    if (isNegative) text.remove_prefix(1);
    if (!text.starts_with("0x") && !text.starts_with("0X")) return false;
    if (text.size() < 3 || text[2] == '-' || !parseInBase(text.substr(2), 16, value)) return false;
    if (isNegative) value = static_cast<std::int64_t>(0 - static_cast<std::uint64_t>(value));
    return true;
}

// Decimal digits with a sign, a fraction and an exponent; the words for infinities and NaN are none.
Value parseDecimal(std::string_view text) {
    std::int64_t whole = 0;
    if (text.starts_with('+') && text.size() > 1 && text[1] != '-') text.remove_prefix(1);
    if (kelmora::parseIntStrict(text, whole)) return Value::integer(whole);
    if (text.empty() || text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) return {};
    double number = 0;
    const std::string copy(text);
    return kelmora::parseDoubleStrict(copy, number) ? Value::number(number) : Value();
}

void toNumber(NativeCall& call) {
    requireArgumentCount(call, 1, 2);
    if (call.count() == 1) {
        if (call[0].isNumber()) return call.give(call[0]);
        if (!call[0].isString()) return call.give({});
        const std::string_view text = withoutBlanks(call[0].letters());
        std::int64_t whole = 0;
        return call.give(parseHexadecimal(text, whole) ? Value::integer(whole) : parseDecimal(text));
    }
    const std::int64_t base = requireInteger(call, 1);
    if (base < 2 || base > 36) failCall(call, "base is out of range");
    std::int64_t value = 0;
    const std::string_view text = withoutBlanks(requireString(call, 0));
    call.give(parseInBase(text, static_cast<std::uint64_t>(base), value) ? Value::integer(value) : Value());
}

// The message is the error's value as it is.
void assertFunction(NativeCall& call) {
    requireAtLeast(call, 1);
    if (!call[0].isTruthy()) {
        if (call.count() == 1) throw std::runtime_error("assertion failed!");
        if (call[1].isString()) throw std::runtime_error(std::string(call[1].letters()));
        throw RuntimeError(call[1]);
    }
    for (const Value& value : call.arguments()) call.give(value);
}

void errorFunction(NativeCall& call) {
    call.machine().raise(call);
}

void protectedCall(NativeCall& call) {
    call.machine().callProtected(call);
}

void pairs(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    requireTable(call, 0);
    call.give(Value(new EntryIterator(call[0])));
}

void ipairs(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    requireTable(call, 0);
    call.give(Value(new ItemIterator(call[0])));
}

void next(NativeCall& call) {
    requireArgumentCount(call, 1, 2);
    requireTable(call, 0);
    EntryIterator iterator(call[0]);
    if (!call[1].isNil() && !iterator.goBehind(call[1])) failCall(call, "the key is not in the table");
    Value key;
    Value value;
    if (!iterator.nextPair(key, value)) return call.give({});
    call.give(std::move(key));
    call.give(std::move(value));
}

void select(NativeCall& call) {
    requireAtLeast(call, 1);
    const auto rest = static_cast<std::int64_t>(call.count()) - 1;
    if (call[0].isString() && call[0].letters() == "#") return call.give(Value::integer(rest));
    std::int64_t first = requireInteger(call, 0);
    if (first < 0) first = rest + first + 1;
    if (first < 1) failCall(call, "the index is out of range");
    for (std::int64_t i = first; i <= rest; ++i) call.give(call[static_cast<std::size_t>(i)]);
}

void rawget(NativeCall& call) {
    requireArgumentCount(call, 2, 2);
    call.give(requireTable(call, 0).get(call[1]));
}

void rawset(NativeCall& call) {
    requireArgumentCount(call, 3, 3);
    tableSetByKey(requireTable(call, 0), call[1], call[2]);
    call.give(call[0]);
}

void type(NativeCall& call) {
    requireArgumentCount(call, 1, 1);
    call.give(call.machine().strings().intern(describeValueType(call[0])));
}

// A source that does not compile gives nil and the reason.
void load(NativeCall& call) {
    requireArgumentCount(call, 1, 2);
    const std::string_view source = requireString(call, 0);
    try {
        Interpreter& machine = call.machine();
        call.give(machine.makeFunction(machine.compile(source, optionalString(call, 1, "<string>"))));
    } catch (const kelmora::guest::GuestError& error) {
        call.give({});
        call.give(Value::text(error.what()));
    }
}

}  // namespace

void bindBasicLibrary(Interpreter& machine) {
    static constexpr LibraryEntry before[] = {
        {"print", print},    {"tostring", toStringFunction}, {"time", time},
        {"time_ms", timeMs}, {"tonumber", toNumber},         {"assert", assertFunction},
    };
    static constexpr LibraryEntry behind[] = {
        {"pairs", pairs},   {"ipairs", ipairs}, {"next", next}, {"select", select},
        {"rawget", rawget}, {"rawset", rawset}, {"type", type}, {"load", load},
    };
    for (const LibraryEntry& entry : before) bindNativeGlobal(machine, entry.name, entry.function);
    using Kind = FunctionObject::Kind;
    machine.globals().set("error", machine.makeNative("error", errorFunction, Kind::Raise));
    machine.globals().set("pcall", machine.makeNative("pcall", protectedCall, Kind::ProtectedCall));
    for (const LibraryEntry& entry : behind) bindNativeGlobal(machine, entry.name, entry.function);
}

}  // namespace vesper::lua
