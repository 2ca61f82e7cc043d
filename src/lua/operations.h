#pragma once

#include <cstdint>
#include <string>

#include "base/numeric_result.h"
#include "lua/value.h"

namespace vesper::lua {

// A whole result becomes an integer.
inline Value numericResult(double value) {
    std::int64_t whole = 0;
    return kelmora::isWholeResult(value, whole) ? Value::integer(whole) : Value::number(value);
}

enum class Arithmetic : std::uint8_t { Add, Subtract, Multiply, Divide, Modulo };

// Integers stay exact and wrap in 64 bits. Raise for operands that are no numbers, and for an exact zero as
// divisor.
Value arithmetic(Arithmetic operation, const Value& a, const Value& b);
Value negated(const Value& value);

// Two numbers or two texts; raise otherwise.
bool isLess(const Value& a, const Value& b);
bool isLessOrEqual(const Value& a, const Value& b);

// The length of a text or a table; raises otherwise.
std::int64_t lengthOf(const Value& value);

// `count` values as one text.
Value concatenated(const Value* values, std::size_t count);
// Lengthens a text, in place where nothing else holds it.
void appendTo(Value& target, const Value* values, std::size_t count);

// Whole floats count as integers; false for anything else.
[[nodiscard]] bool toWholeNumber(const Value& value, std::int64_t& whole);

}  // namespace vesper::lua
