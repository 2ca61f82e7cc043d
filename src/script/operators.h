#pragma once

#include <cstdint>
#include <string>

#include "script/token.h"
#include "script/variable.h"

namespace kelmora {

// Equality of two values: numbers and bools by value, strings and raw buffers by bytes, the rest by identity.
bool variablesEqual(const Variable& a, const Variable& b);
// Negative, zero or positive. Numbers and bools compare with each other, strings with strings; anything
// else raises "Cannot compare int with string" and the like.
int compareVariables(const Variable& a, const Variable& b);

// An arithmetic, comparing or hyper operator on two values; not `and` and `or`.
Variable performOperation(const Variable& left, TokenKind operation, const Variable& right);
// Does `target = target operation value` in place for numbers and string appends. False when nothing
// was done and the general way has to be taken.
bool tryApplyOperationInPlace(Variable& target, TokenKind operation, const Variable& value);

// The text that a table knows the key by. Raises for keys that are no string, number or bool.
std::string keyToString(const Variable& key);

// Bytes of a string, elements of an array, or the n of a table whose keys "1" to "n" are all there.
std::int32_t arrayLength(const Variable& value);

}  // namespace kelmora
