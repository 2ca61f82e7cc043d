#include "plush/shader/expression_compiler.h"

#include <array>
#include <limits>

#include "plush/shader/builtin_functions.h"

namespace kelmora::plush_shader::detail {
namespace {

struct BinaryOperator {
    std::string_view text;
    Op op;
    int level;  // a higher one binds tighter
};

constexpr BinaryOperator binaryOperators[] = {
    {"or", Op::Or, 0}, {"and", Op::And, 1}, {"==", Op::Eq, 2}, {"~=", Op::Ne, 2}, {"!=", Op::Ne, 2},
    {"<", Op::Lt, 2},  {"<=", Op::Le, 2},   {">", Op::Gt, 2},  {">=", Op::Ge, 2}, {"+", Op::Add, 3},
    {"-", Op::Sub, 3}, {"*", Op::Mul, 4},   {"/", Op::Div, 4}, {"%", Op::Mod, 4},
};

const BinaryOperator* binaryOperator(const Token& token) {
    if (token.kind != TokenKind::Name && token.kind != TokenKind::Symbol) return nullptr;
    for (const BinaryOperator& candidate : binaryOperators)
        if (candidate.text == token.text) return &candidate;
    return nullptr;
}

}  // namespace

Slot ExpressionCompiler::expression(int level) {
    Slot left = unary();
    for (;;) {
        const BinaryOperator* found = binaryOperator(cursor_.token());
        if (!found || found->level < level) return left;
        cursor_.advance();
        const Slot right = expression(found->level + 1);
        left = builder_.compute(found->op, left, right);
    }
}

Slot ExpressionCompiler::unary() {
    const TokenCursor::Nesting nesting(cursor_);
    if (cursor_.acceptSymbol("-")) return builder_.compute(Op::Neg, unary());
    if (cursor_.acceptName("not")) return builder_.compute(Op::Not, unary());
    return power();
}

Slot ExpressionCompiler::power() {
    const Slot base = primary();
    if (!cursor_.acceptSymbol("^")) return base;
    const Slot exponent = unary();
    return builder_.compute(Op::Pow, base, exponent);
}

Slot ExpressionCompiler::primary() {
    if (cursor_.acceptSymbol("(")) {
        const Slot value = expression();
        cursor_.requireSymbol(")");
        return value;
    }
    if (cursor_.isKind(TokenKind::Number)) {
        const float value = cursor_.token().number;
        cursor_.advance();
        return builder_.constant(value);
    }
    if (!cursor_.isKind(TokenKind::Name)) cursor_.fail("unexpected " + cursor_.quoted() + " in expression");
    return named(cursor_.requireName({}));
}

Slot ExpressionCompiler::named(const std::string& name) {
    if (name == "math" && atMember()) return mathMember();
    if (names_.isUniformsTable(name)) {
        if (!atMember()) cursor_.fail("the uniforms table can only be indexed with a string key");
        return names_.uniform(memberKey());
    }
    if (cursor_.isSymbol("(")) {
        const BuiltinFunction* function = names_.isVariable(name) ? nullptr : findBuiltinFunction(name);
        if (!function) cursor_.fail("unknown function '" + name + "'");
        return call(*function);
    }
    if (atMember()) cursor_.fail("indexing '" + name + "' is not supported inside a shader");
    return names_.read(name);
}

Slot ExpressionCompiler::mathMember() {
    const std::string key = memberKey();
    if (key == "huge") return builder_.constant(std::numeric_limits<float>::infinity());
    if (key == "pi") return builder_.constant(pi);
    const BuiltinFunction* function = findBuiltinFunction(key);
    if (!function || function->op == Op::Random || function->op == Op::SampleR)
        cursor_.fail("math." + key + " is not supported inside a shader");
    if (!cursor_.isSymbol("(")) cursor_.fail("expected a math function");
    return call(*function);
}

Slot ExpressionCompiler::call(const BuiltinFunction& function) {
    cursor_.requireSymbol("(");
    std::array<Slot, 3> arguments{};
    std::size_t count = 0;
    if (!cursor_.isSymbol(")")) do {
            const Slot argument = expression();
            if (count < arguments.size()) arguments[count] = argument;
            ++count;
        } while (cursor_.acceptSymbol(","));
    cursor_.requireSymbol(")");
    if (count != function.arity)
        cursor_.fail(std::string(function.name) + " expects " + std::to_string(function.arity) +
                     " argument(s)");
    if (function.op >= Op::Random && function.op <= Op::SampleA) builder_.markPixelUse();
    return builder_.compute(function.op, arguments[0], arguments[1], arguments[2]);
}

std::string ExpressionCompiler::memberKey() {
    if (cursor_.acceptSymbol(".")) return cursor_.requireName("expected a name after '.'");
    cursor_.requireSymbol("[");
    if (!cursor_.isKind(TokenKind::String)) cursor_.fail("only string keys are supported inside a shader");
    std::string key = cursor_.token().text;
    cursor_.advance();
    cursor_.requireSymbol("]");
    return key;
}

}  // namespace kelmora::plush_shader::detail
