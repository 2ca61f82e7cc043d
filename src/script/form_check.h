#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "script/parsed_line.h"

namespace kelmora {

struct Interpreter;

// What running a statement would raise for its form alone.
struct FormFault {
    std::string message;
    std::uint32_t token = 0;  // where; the number of tokens for something that is missing behind them
};

// The message of a report, without its place.
std::string reportMessage(const std::string& report);

// Goes through a statement as running it would, without doing anything. `...` is an operand in variadic code.
std::optional<FormFault> checkForm(Interpreter& script, const ParsedScriptLine& line, bool isVariadic);

}  // namespace kelmora
