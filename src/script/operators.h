#pragma once

#include <cstdint>
#include <string>

#include "script/integer_operations.h"
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
// Lengthens a string that `target` holds by the value's text.
void appendInPlace(Variable& target, const Variable& value);
// These do `target = target operation value` in place: for integers, for integers and string appends, and
// for all. False when nothing was done and a more general way has to be taken.
inline bool updateInteger(Variable& target, TokenKind operation, const Variable& value) {
    if (std::int32_t result = 0; target.isInt() && value.isInt() &&
                                 applyToIntegers(operation, target.intValue(), value.intValue(), result)) {
        target.assignInteger(result);
        return true;
    }
    return false;
}
inline bool tryApplyOperationInPlace(Variable& target, TokenKind operation, const Variable& value) {
    if (updateInteger(target, operation, value)) return true;
    if (!target.isString() || operation != TokenKind::Plus) return false;
    appendInPlace(target, value);
    return true;
}
inline void updateInPlace(Variable& target, TokenKind operation, const Variable& value) {
    if (!tryApplyOperationInPlace(target, operation, value))
        target = performOperation(target, operation, value);
}

// The text that a table knows the key by. Raises for keys that are no string, number or bool.
std::string keyToString(const Variable& key);

// Bytes of a string, elements of an array, or the n of a table whose keys "1" to "n" are all there.
std::int32_t arrayLength(const Variable& value);

}  // namespace kelmora
