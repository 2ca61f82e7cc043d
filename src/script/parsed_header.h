#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "script/builtin_ids.h"
#include "script/parsed_line.h"

namespace kelmora {

// A fault of a header is kept until the line runs, and raised then.
struct HeaderFault {
    std::string_view message;  // empty without a fault
    std::uint32_t token = 0;   // past the end of the line for a missing token
};

// `for name = start, stop, step` or `for a, b in expression`.
struct ParsedFor {
    bool isNumeric = false;
    std::vector<NameId> names;
    std::vector<PreparedExpression> bounds;  // numeric: the clauses
    PreparedExpression iterator;             // generic: what is walked
    // Generic: the expression is `pairs(x)` or `ipairs(x)` with nothing behind it.
    BuiltinId builtin = BuiltinId::None;
    PreparedExpression argument;
    HeaderFault fault;
};

// `function name[key]...(parameters)` behind its keywords.
struct ParsedFunctionHeader {
    std::uint32_t nameToken = 0;
    std::vector<PreparedExpression> keys;
    std::vector<NameId> parameters;
    bool isVariadic = false;
    HeaderFault fault;
};

ParsedFor parseForHeader(const ParsedScriptLine& line);
ParsedFunctionHeader parseFunctionHeader(const ParsedScriptLine& line);
// True for the numeric form: a name and "=" behind the `for`.
bool isNumericFor(const ParsedScriptLine& line);

}  // namespace kelmora
