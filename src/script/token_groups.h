#pragma once

#include <cstdint>
#include <vector>

#include "script/parsed_line.h"

namespace kelmora {

// 1 for an opening bracket of any kind, -1 for a closing one, 0 for other tokens.
int bracketStep(TokenKind kind);
PreparedExpression prepareExpression(const ParsedScriptLine& line, std::uint32_t first, std::uint32_t last);
// The comma-separated expressions between two tokens; always at least one.
std::vector<PreparedExpression> splitAtCommas(const ParsedScriptLine& line, std::uint32_t first,
                                              std::uint32_t last);
// Index of the token that closes the group opened at `open`, or the number of tokens.
std::uint32_t closingToken(const ParsedScriptLine& line, std::uint32_t open);

}  // namespace kelmora
