#include "lua/operations.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

#include "lua/table.h"
#include "text/limits.h"
#include "text/number_text.h"

namespace vesper::lua {
namespace {

[[noreturn]] void failOperands(char operation) {
    throw std::runtime_error(std::string("operator '") + operation + "' expects numbers");
}

std::int64_t wrapped(std::uint64_t bits) {
    return static_cast<std::int64_t>(bits);
}

Value moduloNumbers(const Value& a, const Value& b) {
    if (b.asDouble() == 0) throw std::runtime_error("modulo by zero");
    if (!a.isInteger() || !b.isInteger()) return numericResult(std::fmod(a.asDouble(), b.asDouble()));
    if (b.integerValue() == -1) return Value::integer(0);
    return Value::integer(a.integerValue() % b.integerValue());
}

// -1, 0 or 1; 2 when one is not a number. Exact however large they are.
int compareIntegerWithFloat(std::int64_t whole, double value) {
    if (std::isnan(value)) return 2;
    if (value >= 9223372036854775808.0) return -1;
    if (value < -9223372036854775808.0) return 1;
    const auto truncated = static_cast<std::int64_t>(value);
    if (whole != truncated) return whole < truncated ? -1 : 1;
    const double rest = value - static_cast<double>(truncated);
    return rest > 0 ? -1 : rest < 0 ? 1 : 0;
}

int compareNumbers(const Value& a, const Value& b) {
    if (a.isInteger() && b.isInteger())
        return a.integerValue() < b.integerValue() ? -1 : a.integerValue() > b.integerValue() ? 1 : 0;
    if (a.isInteger()) return compareIntegerWithFloat(a.integerValue(), b.floatValue());
    if (b.isInteger()) {
        const int turned = compareIntegerWithFloat(b.integerValue(), a.floatValue());
        return turned == 2 ? 2 : -turned;
    }
    if (std::isnan(a.floatValue()) || std::isnan(b.floatValue())) return 2;
    return a.floatValue() < b.floatValue() ? -1 : a.floatValue() > b.floatValue() ? 1 : 0;
}

int compareOrdered(const Value& a, const Value& b) {
    if (a.isNumber() && b.isNumber()) return compareNumbers(a, b);
    if (a.isString() && b.isString()) {
        const int order = a.letters().compare(b.letters());
        return order < 0 ? -1 : order > 0 ? 1 : 0;
    }
    throw std::runtime_error("ordered comparisons require matching numbers or strings");
}

// The text of one value at a time: a string's own bytes, or what was written into the buffer.
class TextOf {
public:
    std::string_view operator()(const Value& value) {
        if (value.isString()) return value.letters();
        if (value.isInteger()) {
            const auto end = std::to_chars(buffer_, buffer_ + sizeof buffer_, value.integerValue());
            return {buffer_, static_cast<std::size_t>(end.ptr - buffer_)};
        }
        other_ = value.toString();
        return other_;
    }

private:
    char buffer_[24];
    std::string other_;
};

// Room that the texts of these values need at most, but for absurdly long ones.
std::size_t roomFor(const Value* values, std::size_t count) {
    constexpr std::size_t otherText = 32;
    std::size_t room = 0;
    for (std::size_t i = 0; i < count; ++i)
        room += values[i].isString() ? values[i].string().size() : otherText;
    return room;
}

// Goes on in a longer text where the room of this one ends.
void appendText(Value& target, std::string_view text) {
    const std::size_t needed = target.string().size() + text.size();
    if (needed > target.string().capacity()) {
        checkTextSize(needed);
        Value grown(StringObject::makeEmpty(std::min(needed * 2, kelmora::maximumTextSize)));
        grown.string().append(target.letters());
        grown.string().append(text);
        target = std::move(grown);
        return;
    }
    target.string().append(text);
}

void appendAll(Value& target, const Value* values, std::size_t count) {
    TextOf textOf;
    for (std::size_t i = 0; i < count; ++i) appendText(target, textOf(values[i]));
}

}  // namespace

Value arithmetic(Arithmetic operation, const Value& a, const Value& b) {
    if (!a.isNumber() || !b.isNumber()) failOperands("+-*/%"[static_cast<int>(operation)]);
    const bool areIntegers = a.isInteger() && b.isInteger();
    const auto left = static_cast<std::uint64_t>(a.integerValue());
    const auto right = static_cast<std::uint64_t>(b.integerValue());
    switch (operation) {
        case Arithmetic::Add:
            return areIntegers ? Value::integer(wrapped(left + right))
                               : numericResult(a.asDouble() + b.asDouble());
        case Arithmetic::Subtract:
            return areIntegers ? Value::integer(wrapped(left - right))
                               : numericResult(a.asDouble() - b.asDouble());
        case Arithmetic::Multiply:
            return areIntegers ? Value::integer(wrapped(left * right))
                               : numericResult(a.asDouble() * b.asDouble());
        case Arithmetic::Divide:
            if (b.asDouble() == 0) throw std::runtime_error("division by zero");
            return numericResult(a.asDouble() / b.asDouble());
        default:
            return moduloNumbers(a, b);
    }
}

Value negated(const Value& value) {
    if (value.isInteger())
        return Value::integer(wrapped(0 - static_cast<std::uint64_t>(value.integerValue())));
    if (!value.isFloat()) throw std::runtime_error("unary '-' expects a number");
    return numericResult(-value.floatValue());
}

bool isLess(const Value& a, const Value& b) {
    return compareOrdered(a, b) == -1;
}

bool isLessOrEqual(const Value& a, const Value& b) {
    return compareOrdered(a, b) <= 0;
}

bool valuesEqual(const Value& a, const Value& b) {
    if (a.kind() != b.kind()) return a.isNumber() && b.isNumber() && compareNumbers(a, b) == 0;
    switch (a.kind()) {
        case ValueKind::Nil:
            return true;
        case ValueKind::Integer:
            return a.integerValue() == b.integerValue();
        case ValueKind::Float:
            return a.floatValue() == b.floatValue();
        case ValueKind::Boolean:
            return a.booleanValue() == b.booleanValue();
        case ValueKind::String:
            return a.string().equals(b.string());
        default:
            return a.identity() == b.identity();
    }
}

std::int64_t lengthOf(const Value& value) {
    if (value.isString()) return static_cast<std::int64_t>(value.string().size());
    if (value.isTable()) return static_cast<std::int64_t>(tableSequenceLength(value.table()));
    throw std::runtime_error("length operator expects a string or table");
}

Value concatenated(const Value* values, std::size_t count) {
    Value made(StringObject::makeEmpty(std::min(roomFor(values, count), kelmora::maximumTextSize)));
    appendAll(made, values, count);
    return made;
}

void appendTo(Value& target, const Value* values, std::size_t count) {
    if (!target.isString() || target.string().isShared()) {
        TextOf textOf;
        const std::string_view before = textOf(target);
        const std::size_t room = before.size() + roomFor(values, count);
        Value own(StringObject::makeEmpty(std::min(room * 2, kelmora::maximumTextSize)));
        own.string().append(before);
        target = std::move(own);
    }
    appendAll(target, values, count);
}

bool toWholeNumber(const Value& value, std::int64_t& whole) {
    if (value.isFloat()) return kelmora::isWholeResult(value.floatValue(), whole);
    whole = value.integerValue();
    return value.isInteger();
}

}  // namespace vesper::lua
