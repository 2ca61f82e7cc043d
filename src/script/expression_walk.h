#pragma once

#include <cstdint>
#include <string_view>

#include "script/parsed_line.h"
#include "script/variable.h"

namespace kelmora {

struct Interpreter;

// Evaluates an expression straight from a line's tokens, by precedence climbing. This is the meaning of
// expressions. The index is left on the first token that was not used.
class ExpressionWalk {
public:
    enum class Mode : std::uint8_t { Evaluate, Check };  // Check raises for faults of form and does nothing

    ExpressionWalk(Interpreter& script, const ParsedScriptLine& line, std::uint32_t& index,
                   Mode mode = Mode::Evaluate)
        : script_(script), line_(line), index_(index), live_(mode == Mode::Evaluate) {}

    // Gives nil when a soft error ends the evaluation half-way; the index is of no use then.
    Variable evaluate(int minimumPrecedence = 1);

private:
    bool atEnd() const { return index_ >= line_.tokens.size(); }
    bool at(TokenKind kind) const { return !atEnd() && line_.analysis[index_].kind == kind; }
    bool at(std::uint32_t index, TokenKind kind) const {
        return index < line_.tokens.size() && line_.analysis[index].kind == kind;
    }
    std::string_view here() const { return atEnd() ? std::string_view("EOF") : line_.tokens[index_]; }
    bool aborted() const;
    [[noreturn]] void fail(const std::string& message, std::string_view token) const;

    Variable evaluateLogical(Variable left, TokenKind operation, int precedence);
    Variable operand();
    Variable prefixed(TokenKind operation);
    Variable primary();
    Variable variable(const TokenAnalysis& token) const;
    Variable parenthesised();
    Variable postfix(Variable value);
    Variable call(const Variable& callee);
    Variable subscript(const Variable& container);
    Variable arrayConstructor();
    Variable tableConstructor();
    bool atKeyedEntry() const;
    std::string bracketedKey();
    std::string wordKey();

    Interpreter& script_;
    const ParsedScriptLine& line_;
    std::uint32_t& index_;
    // Off inside the side of `and` and `or` that does not count: syntax is checked, nothing happens.
    bool live_;
};

}  // namespace kelmora
