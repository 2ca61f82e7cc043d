#include "script/expression_walk.h"

#include <optional>

#include "script/argument_list.h"
#include "script/interpreter.h"
#include "script/numbers.h"
#include "script/operators.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

// Collects a constructor's entries: an array as long as no entry has a key.
class ConstructorEntries {
public:
    void addPositional(Variable value) {
        ++positions_;
        if (table_) {
            table_->table().set(TableKey(static_cast<std::int32_t>(positions_)), std::move(value));
        } else {
            items_.push_back(std::move(value));
        }
    }
    void addKeyed(std::string key, Variable value) {
        if (!table_) {
            table_ = Variable::makeTable();
            for (std::size_t i = 0; i < items_.size(); ++i)
                table_->table().set(TableKey(static_cast<std::int32_t>(i + 1)), std::move(items_[i]));
        }
        table_->table().set(std::move(key), std::move(value));
    }
    Variable take() { return table_ ? std::move(*table_) : Variable::array(std::move(items_)); }

private:
    std::vector<Variable> items_;
    std::optional<Variable> table_;
    std::size_t positions_ = 0;
};

}  // namespace

bool ExpressionWalk::aborted() const {
    return script_.shouldAbortForSoftRaisedError();
}

void ExpressionWalk::fail(const std::string& message, std::string_view token) const {
    script_.context.throwError(message, token);
}

Variable ExpressionWalk::evaluate(int minimumPrecedence) {
    script_.stack.check();
    Variable result = operand();
    while (!aborted() && !atEnd()) {
        const TokenKind operation = line_.analysis[index_].kind;
        const int precedence = binaryPrecedence(operation);
        if (precedence < minimumPrecedence || precedence == 0) return result;
        ++index_;
        if (operation == TokenKind::Or || operation == TokenKind::And) {
            result = evaluateLogical(std::move(result), operation, precedence);
            continue;
        }
        const Variable right = evaluate(isRightAssociative(operation) ? precedence : precedence + 1);
        if (aborted()) break;
        if (live_) result = performOperation(result, operation, right);
    }
    return aborted() ? Variable() : result;
}

Variable ExpressionWalk::evaluateLogical(Variable left, TokenKind operation, int precedence) {
    const bool decided = !live_ || isTruthy(left) == (operation == TokenKind::Or);
    if (!decided) return evaluate(precedence + 1);
    const bool wasLive = live_;
    live_ = false;
    evaluate(precedence + 1);
    live_ = wasLive;
    return left;
}

Variable ExpressionWalk::operand() {
    if (atEnd()) fail("Unexpected end of expression", "EOF");
    const TokenKind kind = line_.analysis[index_].kind;
    switch (kind) {
        case TokenKind::Not:
            if (index_ + 1 >= line_.tokens.size() ||
                isStandaloneNotBoundary(line_.analysis[index_ + 1].kind)) {
                ++index_;
                return {};
            }
            return prefixed(kind);
        case TokenKind::Exclamation:
        case TokenKind::Length:
        case TokenKind::Plus:
        case TokenKind::Minus:
            return prefixed(kind);
        default:
            return primary();
    }
}

Variable ExpressionWalk::prefixed(TokenKind operation) {
    ++index_;
    const Variable value = evaluate(7);
    if (!live_ || aborted()) return {};
    switch (operation) {
        case TokenKind::Length:
            return Variable::integer(arrayLength(value));
        case TokenKind::Plus:
            return value;
        case TokenKind::Minus:
            if (value.isFloat()) return Variable::number(-value.floatValue());
            if (!value.isNumeric()) fail("Unary '-' requires a numeric value", "-");
            return Variable::integer(
                static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(toInt(value))));
        default:
            return Variable::boolean(!isTruthy(value));
    }
}

Variable ExpressionWalk::primary() {
    const TokenAnalysis& token = line_.analysis[index_];
    switch (token.kind) {
        case TokenKind::OpenBrace:
            return postfix(tableConstructor());
        case TokenKind::OpenBracket:
            return postfix(arrayConstructor());
        case TokenKind::OpenParenthesis:
            return postfix(parenthesised());
        case TokenKind::Ellipsis:
            if (script_.varargs.empty()) break;
            ++index_;
            return postfix(live_ ? Variable::makeMulti(script_.varargs.back()) : Variable());
        case TokenKind::String:
        case TokenKind::True:
        case TokenKind::False:
        case TokenKind::Pointer:
            ++index_;
            return postfix(token.literal);
        case TokenKind::Int:
        case TokenKind::Float:
            ++index_;
            return token.literal;
        default:
            if (!token.isIdentifier()) break;
            ++index_;
            return postfix(live_ ? variable(token) : Variable());
    }
    fail("Unknown token: " + line_.tokens[index_], line_.tokens[index_]);
}

Variable ExpressionWalk::variable(const TokenAnalysis& token) const {
    const Variable* found = token.isScoped() ? script_.scopes.findExplicit(token.name, token.scope)
                                             : script_.scopes.find(token.name);
    return found ? *found : Variable();
}

Variable ExpressionWalk::parenthesised() {
    ++index_;
    Variable value = evaluate();
    if (aborted()) return {};
    if (!at(TokenKind::CloseParenthesis)) fail("Expected closing parenthesis", ")");
    ++index_;
    return value;
}

Variable ExpressionWalk::postfix(Variable value) {
    for (;;) {
        if (aborted()) return {};
        if (at(TokenKind::OpenParenthesis)) {
            value = call(value);
        } else if (at(TokenKind::OpenBracket)) {
            value = subscript(value);
        } else {
            return value;
        }
    }
}

Variable ExpressionWalk::call(const Variable& callee) {
    ++index_;
    ArgumentList arguments;
    if (at(TokenKind::CloseParenthesis)) {
        ++index_;
    } else {
        for (;;) {
            Variable argument = evaluate();
            if (aborted()) return {};
            if (live_) arguments.push(std::move(argument));
            const bool closed = at(TokenKind::CloseParenthesis);
            if (!closed && !at(TokenKind::Comma)) fail("Expected ',' or ')' after function argument", here());
            ++index_;
            if (closed) break;
        }
    }
    return live_ ? script_.invokeCallable(callee, arguments.span()) : Variable();
}

Variable ExpressionWalk::subscript(const Variable& container) {
    ++index_;
    const Variable key = evaluate();
    if (aborted()) return {};
    if (!at(TokenKind::CloseBracket)) fail("Expected closing bracket", "]");
    ++index_;
    return live_ ? script_.getIndexedValue(container, key) : Variable();
}

Variable ExpressionWalk::arrayConstructor() {
    ++index_;
    std::vector<Variable> items;
    if (at(TokenKind::CloseBracket)) {
        ++index_;
        return Variable::array(std::move(items));
    }
    for (;;) {
        items.push_back(evaluate());
        if (aborted()) return {};
        const bool closed = at(TokenKind::CloseBracket);
        if (!closed && !at(TokenKind::Comma)) fail("Expected ',' or ']' in array literal", here());
        ++index_;
        if (closed) return Variable::array(std::move(items));
    }
}

Variable ExpressionWalk::tableConstructor() {
    ++index_;
    if (at(TokenKind::CloseBrace)) {
        ++index_;
        return Variable::makeTable();
    }
    ConstructorEntries entries;
    for (;;) {
        if (atEnd()) fail("Unexpected end of table literal", "EOF");
        if (at(TokenKind::OpenBracket) || atKeyedEntry()) {
            std::string key = at(TokenKind::OpenBracket) ? bracketedKey() : wordKey();
            if (aborted()) return {};
            Variable value = evaluate();
            if (aborted()) return {};
            entries.addKeyed(std::move(key), std::move(value));
        } else {
            Variable value = evaluate();
            if (aborted()) return {};
            entries.addPositional(std::move(value));
        }
        if (atEnd()) fail("Unexpected end of table literal", "EOF");
        if (at(TokenKind::Comma)) {
            ++index_;
        } else if (!at(TokenKind::CloseBrace)) {
            fail("Expected ',' or '}' in table literal", here());
        }
        if (at(TokenKind::CloseBrace)) break;
    }
    ++index_;
    return entries.take();
}

bool ExpressionWalk::atKeyedEntry() const {
    return at(index_ + 1, TokenKind::Colon) || at(index_ + 1, TokenKind::Assign);
}

std::string ExpressionWalk::bracketedKey() {
    ++index_;
    const Variable key = evaluate();
    if (aborted()) return {};
    if (!at(TokenKind::CloseBracket)) fail("Expected ']' after table key", here());
    ++index_;
    if (!at(TokenKind::Colon) && !at(TokenKind::Assign)) fail("Expected ':' after table key", here());
    ++index_;
    return live_ ? keyToString(key) : std::string();
}

std::string ExpressionWalk::wordKey() {
    const TokenAnalysis& token = line_.analysis[index_];
    const std::string& text = line_.tokens[index_];
    const bool isWord =
        token.isIdentifier() || token.kind == TokenKind::Int || token.kind == TokenKind::Float;
    if (!isWord && token.kind != TokenKind::String) fail("Unknown token: " + text, text);
    index_ += 2;
    return token.kind == TokenKind::String ? token.literal.text() : text;
}

}  // namespace kelmora
