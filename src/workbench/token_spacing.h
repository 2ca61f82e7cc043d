#pragma once

#include <cstdint>
#include <string_view>

#include "workbench/source_tokens.h"

namespace kelmora {

enum class Spacing : std::uint8_t { None, One, Keep };

// The words that operate or stand in front of other things: no call and no element behind them.
bool isKeyword(std::string_view word);

// What stands between two tokens of a line. `isPrefix` says that the first is a sign in front of its operand.
Spacing spacingBetween(std::string_view source, const SourceToken& left, bool isPrefix,
                       const SourceToken& right);
// Whether the two would still be two tokens without a blank between them.
bool canTouch(std::string_view source, const SourceToken& left, const SourceToken& right);
// Whether a sign in front of what follows belongs to it: `previous` stands in front of the sign, null at the
// start of a statement.
bool isPrefixSign(std::string_view source, const SourceToken* previous, const SourceToken& sign);

}  // namespace kelmora
