#include "lua/parser.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <utility>

#include "base/call_trail.h"
#include "base/number_parse.h"

namespace vesper::lua {
namespace {

// a.b.c, or a.b:c when the last separator is a colon; nothing for a target of another form.
std::string nameOfTarget(const Expr& target, char lastSeparator = '.') {
    std::string name;
    char separator = lastSeparator;
    const Expr* part = &target;
    for (; part->kind == ExprKind::Field; part = static_cast<const FieldExpr*>(part)->object) {
        if (name.size() > kelmora::maximumTrailName) return {};
        name.insert(0, static_cast<const FieldExpr*>(part)->name.letters());
        name.insert(name.begin(), std::exchange(separator, '.'));
    }
    if (part->kind != ExprKind::Variable) return {};
    return name.insert(0, static_cast<const VariableExpr*>(part)->name.letters());
}

// Of a function that is written where it gets its name.
void nameFunction(Expr& value, std::string name) {
    if (value.kind == ExprKind::Function) static_cast<FunctionExpr&>(value).name = std::move(name);
}

}  // namespace

Parser::Parser(std::string_view source, std::string_view chunkName, StringPool& strings,
               const kelmora::NativeStack& stack)
    : lexer_(source, chunkName), chunkName_(chunkName), strings_(strings), stack_(stack) {}

SyntaxTree Parser::parse() {
    token_ = lexer_.next();
    ahead_ = lexer_.next();
    tree_.main = make<FunctionExpr>();
    tree_.main->body = parseBlock();
    if (!at(TokenKind::End)) fail("expected expression");
    return std::move(tree_);
}

void Parser::advance() {
    token_ = std::move(ahead_);
    ahead_ = lexer_.next();
}

bool Parser::accept(TokenKind kind) {
    if (!at(kind)) return false;
    advance();
    return true;
}

void Parser::expect(TokenKind kind, std::string_view message) {
    if (!accept(kind)) fail(message);
}

Value Parser::expectName(std::string_view message) {
    if (!at(TokenKind::Name)) fail(message);
    Value name = strings_.intern(token_.text);
    advance();
    return name;
}

void Parser::fail(std::string_view message) const {
    kelmora::guest::failParse(chunkName_, token_.location(), message);
}

void Parser::checkDepth() const {
    try {
        stack_.check();
    } catch (const std::runtime_error& error) {
        fail(error.what());
    }
}

bool Parser::atBlockEnd() const {
    return at(TokenKind::End) || at(TokenKind::EndKeyword) || at(TokenKind::Else) || at(TokenKind::ElseIf);
}

bool Parser::atExpressionStart() const {
    switch (token_.kind) {
        case TokenKind::Name:
        case TokenKind::Number:
        case TokenKind::String:
        case TokenKind::False:
        case TokenKind::Function:
        case TokenKind::Nil:
        case TokenKind::Not:
        case TokenKind::True:
        case TokenKind::Hash:
        case TokenKind::LeftParenthesis:
        case TokenKind::Minus:
        case TokenKind::LeftBrace:
        case TokenKind::Ellipsis:
            return true;
        default:
            return false;
    }
}

Block Parser::parseBlock() {
    checkDepth();
    Block block;
    while (!atBlockEnd()) {
        if (accept(TokenKind::Semicolon)) continue;
        block.push_back(parseStatement());
    }
    return block;
}

Block Parser::parseLoopBody(std::string_view unclosed) {
    ++loopDepth_;
    Block body = parseBlock();
    --loopDepth_;
    expect(TokenKind::EndKeyword, unclosed);
    return body;
}

Stmt* Parser::parseStatement() {
    switch (token_.kind) {
        case TokenKind::If:
            return parseIf();
        case TokenKind::While:
            return parseWhile();
        case TokenKind::For:
            return parseFor();
        case TokenKind::Function:
            // Behind the word stands a name, or an expression begins that is no statement.
            return parseFunctionDeclaration();
        case TokenKind::Local:
            return parseLocal();
        case TokenKind::Return:
            return parseReturn();
        case TokenKind::Break:
            return parseBreak();
        default:
            return parseExpressionStatement();
    }
}

Stmt* Parser::parseIf() {
    auto* statement = make<IfStmt>();
    std::string_view missingThen = "expected 'then' after if condition";
    do {
        advance();
        IfStmt::Branch branch;
        branch.condition = parseExpression();
        expect(TokenKind::Then, std::exchange(missingThen, "expected 'then' after elseif condition"));
        branch.block = parseBlock();
        statement->branches.push_back(std::move(branch));
    } while (at(TokenKind::ElseIf));
    if (accept(TokenKind::Else)) statement->elseBlock = parseBlock();
    expect(TokenKind::EndKeyword, "expected 'end' after if statement");
    return statement;
}

Stmt* Parser::parseWhile() {
    auto* statement = make<WhileStmt>();
    advance();
    statement->condition = parseExpression();
    expect(TokenKind::Do, "expected 'do' after while condition");
    statement->body = parseLoopBody("expected 'end' after while loop");
    return statement;
}

Stmt* Parser::parseFor() {
    const std::uint32_t line = token_.line;
    advance();
    Value name = expectName("expected loop variable name");
    if (at(TokenKind::Assign)) return parseNumericFor(line, std::move(name));
    return parseGenericFor(line, std::move(name));
}

Stmt* Parser::parseNumericFor(std::uint32_t line, Value name) {
    auto* statement = tree_.make<NumericForStmt>(line);
    statement->name = std::move(name);
    advance();
    statement->start = parseExpression();
    expect(TokenKind::Comma, "expected ',' after numeric for start value");
    statement->limit = parseExpression();
    if (accept(TokenKind::Comma)) statement->step = parseExpression();
    expect(TokenKind::Do, "expected 'do' after numeric for range");
    statement->body = parseLoopBody("expected 'end' after numeric for loop");
    return statement;
}

Stmt* Parser::parseGenericFor(std::uint32_t line, Value firstName) {
    auto* statement = tree_.make<GenericForStmt>(line);
    statement->names.push_back(std::move(firstName));
    while (accept(TokenKind::Comma)) statement->names.push_back(expectName("expected loop variable name"));
    expect(TokenKind::In, "expected 'in' in generic for loop");
    statement->iterator = parseExpression();
    expect(TokenKind::Do, "expected 'do' after generic for iterator");
    statement->body = parseLoopBody("expected 'end' after generic for loop");
    return statement;
}

Stmt* Parser::parseFunctionDeclaration() {
    auto* statement = make<FunctionDeclarationStmt>();
    const std::uint32_t line = token_.line;
    advance();
    auto* variable = make<VariableExpr>();
    variable->name = expectName("expected function name");
    statement->target = variable;
    while (at(TokenKind::Dot)) {
        auto* field = make<FieldExpr>();
        advance();
        field->object = statement->target;
        field->name = expectName("expected field name after '.'");
        statement->target = field;
    }
    bool isMethod = false;
    if (at(TokenKind::Colon)) {
        auto* field = make<FieldExpr>();
        advance();
        field->object = statement->target;
        field->name = expectName("expected method name after ':'");
        statement->target = field;
        isMethod = true;
    }
    if (at(TokenKind::LeftBracket)) fail("invalid function target");
    statement->function = parseFunctionBody(line, isMethod);
    statement->function->name = nameOfTarget(*statement->target, isMethod ? ':' : '.');
    return statement;
}

Stmt* Parser::parseLocal() {
    const std::uint32_t line = token_.line;
    advance();
    if (accept(TokenKind::Function)) return parseLocalFunction(line);
    auto* statement = tree_.make<AssignmentStmt>(line);
    statement->isLocal = true;
    do {
        statement->names.push_back(expectName("expected local variable name"));
    } while (accept(TokenKind::Comma));
    if (accept(TokenKind::Assign)) statement->values = parseExpressionList();
    for (std::size_t i = 0; i < std::min(statement->names.size(), statement->values.size()); ++i)
        nameFunction(*statement->values[i], std::string(statement->names[i].letters()));
    return statement;
}

Stmt* Parser::parseLocalFunction(std::uint32_t line) {
    auto* statement = tree_.make<FunctionDeclarationStmt>(line);
    statement->localName = expectName("expected local function name");
    statement->function = parseFunctionBody(line, false);
    statement->function->name = statement->localName.letters();
    return statement;
}

Stmt* Parser::parseReturn() {
    auto* statement = make<ReturnStmt>();
    advance();
    if (atExpressionStart()) statement->values = parseExpressionList();
    return statement;
}

Stmt* Parser::parseBreak() {
    if (loopDepth_ == 0) fail("break used outside a loop");
    auto* statement = make<BreakStmt>();
    advance();
    return statement;
}

Stmt* Parser::parseExpressionStatement() {
    const std::uint32_t line = token_.line;
    Expr* expression = parseExpression();
    if (at(TokenKind::Assign) || at(TokenKind::Comma)) return parseAssignment(line, expression);
    if (expression->kind != ExprKind::Call) fail("expected function call");
    auto* statement = tree_.make<ExpressionStmt>(line);
    statement->call = static_cast<CallExpr*>(expression);
    return statement;
}

Stmt* Parser::parseAssignment(std::uint32_t line, Expr* first) {
    auto* statement = tree_.make<AssignmentStmt>(line);
    const auto addTarget = [&](Expr* target) {
        const bool fits = target->kind == ExprKind::Variable || target->kind == ExprKind::Field ||
                          target->kind == ExprKind::Index;
        if (!fits) fail("invalid assignment target");
        statement->targets.push_back(target);
    };
    addTarget(first);
    while (accept(TokenKind::Comma)) addTarget(parseExpression());
    expect(TokenKind::Assign, "expected '=' in assignment");
    statement->values = parseExpressionList();
    for (std::size_t i = 0; i < std::min(statement->targets.size(), statement->values.size()); ++i)
        if (statement->values[i]->kind == ExprKind::Function)
            nameFunction(*statement->values[i], nameOfTarget(*statement->targets[i]));
    return statement;
}

ExprList Parser::parseExpressionList() {
    ExprList list;
    do {
        list.push_back(parseExpression());
    } while (accept(TokenKind::Comma));
    return list;
}

Expr* Parser::parseExpression() {
    checkDepth();
    Expr* left = parseAnd();
    while (at(TokenKind::Or)) {
        auto* node = make<LogicalExpr>();
        advance();
        node->left = left;
        node->right = parseAnd();
        left = node;
    }
    return left;
}

Expr* Parser::parseAnd() {
    Expr* left = parseComparison();
    while (at(TokenKind::And)) {
        auto* node = make<LogicalExpr>();
        advance();
        node->isAnd = true;
        node->left = left;
        node->right = parseComparison();
        left = node;
    }
    return left;
}

Expr* Parser::makeBinary(BinaryOperator operation, Expr* left, Expr* right, std::uint32_t line) {
    auto* node = tree_.make<BinaryExpr>(line);
    node->operation = operation;
    node->left = left;
    node->right = right;
    return node;
}

Expr* Parser::parseComparison() {
    Expr* left = parseConcat();
    for (;;) {
        BinaryOperator operation = BinaryOperator::Equal;
        switch (token_.kind) {
            case TokenKind::Less:
                operation = BinaryOperator::Less;
                break;
            case TokenKind::LessEqual:
                operation = BinaryOperator::LessEqual;
                break;
            case TokenKind::Greater:
                operation = BinaryOperator::Greater;
                break;
            case TokenKind::GreaterEqual:
                operation = BinaryOperator::GreaterEqual;
                break;
            case TokenKind::Equal:
                break;
            case TokenKind::NotEqual:
                operation = BinaryOperator::NotEqual;
                break;
            default:
                return left;
        }
        const std::uint32_t line = token_.line;
        advance();
        left = makeBinary(operation, left, parseConcat(), line);
    }
}

Expr* Parser::parseConcat() {
    Expr* left = parseAdditive();
    while (at(TokenKind::Concat)) {
        const std::uint32_t line = token_.line;
        advance();
        left = makeBinary(BinaryOperator::Concat, left, parseAdditive(), line);
    }
    return left;
}

Expr* Parser::parseAdditive() {
    Expr* left = parseFactor();
    while (at(TokenKind::Plus) || at(TokenKind::Minus)) {
        const auto operation = at(TokenKind::Plus) ? BinaryOperator::Add : BinaryOperator::Subtract;
        const std::uint32_t line = token_.line;
        advance();
        left = makeBinary(operation, left, parseFactor(), line);
    }
    return left;
}

Expr* Parser::parseFactor() {
    Expr* left = parseUnary();
    for (;;) {
        BinaryOperator operation = BinaryOperator::Multiply;
        if (at(TokenKind::Slash)) {
            operation = BinaryOperator::Divide;
        } else if (at(TokenKind::Percent)) {
            operation = BinaryOperator::Modulo;
        } else if (!at(TokenKind::Star)) {
            return left;
        }
        const std::uint32_t line = token_.line;
        advance();
        left = makeBinary(operation, left, parseUnary(), line);
    }
}

Expr* Parser::parseUnary() {
    UnaryOperator operation = UnaryOperator::Not;
    if (at(TokenKind::Minus)) {
        operation = UnaryOperator::Negate;
    } else if (at(TokenKind::Hash)) {
        operation = UnaryOperator::Length;
    } else if (!at(TokenKind::Not)) {
        return parsePrefixExpression();
    }
    checkDepth();
    auto* node = make<UnaryExpr>();
    advance();
    node->operation = operation;
    node->operand = parseUnary();
    return node;
}

Expr* Parser::parsePrefixExpression() {
    return parseChain(parsePrimary());
}

Expr* Parser::makeLiteral(Value value) {
    auto* literal = make<LiteralExpr>();
    literal->value = std::move(value);
    advance();
    return literal;
}

Expr* Parser::parsePrimary() {
    switch (token_.kind) {
        case TokenKind::Nil:
            return makeLiteral({});
        case TokenKind::True:
            return makeLiteral(Value::boolean(true));
        case TokenKind::False:
            return makeLiteral(Value::boolean(false));
        case TokenKind::Number:
            return makeLiteral(readNumber(token_.text));
        case TokenKind::String:
            return makeLiteral(strings_.intern(token_.text));
        case TokenKind::Name: {
            auto* variable = make<VariableExpr>();
            variable->name = strings_.intern(token_.text);
            advance();
            return variable;
        }
        case TokenKind::Function: {
            const std::uint32_t line = token_.line;
            advance();
            return parseFunctionBody(line, false);
        }
        case TokenKind::LeftBrace:
            return parseTable();
        case TokenKind::LeftParenthesis: {
            auto* node = make<ParenthesisedExpr>();
            advance();
            node->inner = parseExpression();
            expect(TokenKind::RightParenthesis, "expected ')' after expression");
            return node;
        }
        default:
            fail("expected expression");
    }
}

Expr* Parser::parseChain(Expr* expression) {
    for (;;) {
        const std::uint32_t line = token_.line;
        if (accept(TokenKind::Dot)) {
            auto* field = tree_.make<FieldExpr>(line);
            field->object = expression;
            field->name = expectName("expected field name after '.'");
            expression = field;
        } else if (accept(TokenKind::LeftBracket)) {
            auto* index = tree_.make<IndexExpr>(line);
            index->object = expression;
            index->key = parseExpression();
            expect(TokenKind::RightBracket, "expected ']' after index expression");
            expression = index;
        } else if (accept(TokenKind::Colon)) {
            Value method = expectName("expected method name after ':'");
            auto* call = static_cast<CallExpr*>(parseCall(expression, line));
            call->isMethod = true;
            call->method = std::move(method);
            expression = call;
        } else if (at(TokenKind::LeftParenthesis)) {
            expression = parseCall(expression, line);
        } else {
            return expression;
        }
    }
}

Expr* Parser::parseCall(Expr* callee, std::uint32_t line) {
    auto* call = tree_.make<CallExpr>(line);
    call->callee = callee;
    expect(TokenKind::LeftParenthesis, "expected '(' before arguments");
    if (!at(TokenKind::RightParenthesis)) call->arguments = parseExpressionList();
    expect(TokenKind::RightParenthesis, "expected ')' after arguments");
    return call;
}

Expr* Parser::parseTable() {
    auto* table = make<TableExpr>();
    advance();
    while (!at(TokenKind::RightBrace)) {
        table->fields.push_back(parseTableField());
        if (!accept(TokenKind::Comma) && !accept(TokenKind::Semicolon)) break;
    }
    expect(TokenKind::RightBrace, "expected '}' after table constructor");
    return table;
}

TableExpr::Field Parser::parseTableField() {
    TableExpr::Field field;
    if (accept(TokenKind::LeftBracket)) {
        field.key = parseExpression();
        expect(TokenKind::RightBracket, "expected ']' after table key");
        expect(TokenKind::Assign, "expected '=' after table key");
    } else if (at(TokenKind::Name) && ahead_.kind == TokenKind::Assign) {
        field.key = makeLiteral(strings_.intern(token_.text));
        expect(TokenKind::Assign, "expected '=' after table field name");
    }
    field.value = parseExpression();
    if (field.key && field.key->kind == ExprKind::Literal) {
        const Value& key = static_cast<const LiteralExpr*>(field.key)->value;
        if (key.isString()) nameFunction(*field.value, std::string(key.letters()));
    }
    return field;
}

FunctionExpr* Parser::parseFunctionBody(std::uint32_t line, bool isMethod) {
    auto* function = tree_.make<FunctionExpr>(line);
    if (isMethod) function->parameters.push_back(strings_.intern("self"));
    expect(TokenKind::LeftParenthesis, "expected '(' after function name");
    if (!at(TokenKind::RightParenthesis)) {
        do {
            function->parameters.push_back(expectName("expected parameter name"));
        } while (accept(TokenKind::Comma));
    }
    expect(TokenKind::RightParenthesis, "expected ')' after parameter list");
    const std::size_t outerLoops = std::exchange(loopDepth_, 0);
    function->body = parseBlock();
    loopDepth_ = outerLoops;
    expect(TokenKind::EndKeyword, "expected 'end' after function body");
    return function;
}

// Decimal integers beyond 64 bits become floats, hexadecimal ones wrap.
Value Parser::readNumber(const std::string& text) const {
    if (text.size() > 2 && (text[1] == 'x' || text[1] == 'X')) {
        std::uint64_t bits = 0;
        for (const char c : std::string_view(text).substr(2))
            bits = bits * 16 + static_cast<std::uint64_t>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
        return Value::integer(static_cast<std::int64_t>(bits));
    }
    std::int64_t whole = 0;
    if (text.find('.') == std::string::npos && kelmora::parseIntStrict(text, whole))
        return Value::integer(whole);
    double value = 0;
    if (kelmora::parseDoubleStrict(text, value)) return Value::number(value);
    return Value::number(text[0] == '0' ? 0.0 : std::numeric_limits<double>::infinity());
}

}  // namespace vesper::lua
