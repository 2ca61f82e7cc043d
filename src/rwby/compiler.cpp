#include "rwby/compiler.h"

#include <bit>
#include <unordered_map>

#include "base/number_parse.h"
#include "rwby/lexer.h"

namespace vesper::ruby {
namespace {

// The constants of a program, each held once.
class ConstantTable {
public:
    explicit ConstantTable(RubyItems& constants) : constants_(constants) {}

    std::int32_t text(const std::string& text) {
        return add(texts_, text, [&] { return RubyValue::text(text); });
    }
    std::int32_t integer(std::int64_t value) {
        return add(integers_, value, [&] { return RubyValue::integer(value); });
    }
    std::int32_t number(double value) {
        return add(floats_, std::bit_cast<std::uint64_t>(value), [&] { return RubyValue::number(value); });
    }
    std::int32_t plain(const RubyValue& value) {
        const int key = value.isNil() ? 0 : value.booleanValue() ? 1 : 2;
        return add(plain_, key, [&] { return value; });
    }

private:
    template <typename Map, typename Key, typename Make>
    std::int32_t add(Map& known, const Key& key, Make make) {
        const auto [place, isNew] = known.emplace(key, static_cast<std::int32_t>(constants_.size()));
        if (isNew) constants_.push_back(make());
        return place->second;
    }

    RubyItems& constants_;
    std::unordered_map<std::string, std::int32_t> texts_;
    std::unordered_map<std::int64_t, std::int32_t> integers_;
    std::unordered_map<std::uint64_t, std::int32_t> floats_;
    std::unordered_map<int, std::int32_t> plain_;
};

bool startsExpression(TokenKind kind) {
    switch (kind) {
        case TokenKind::Name:
        case TokenKind::Integer:
        case TokenKind::Float:
        case TokenKind::String:
        case TokenKind::True:
        case TokenKind::False:
        case TokenKind::Nil:
        case TokenKind::Not:
        case TokenKind::Minus:
        case TokenKind::OpenParenthesis:
        case TokenKind::OpenBracket:
            return true;
        default:
            return false;
    }
}

bool endsStatement(TokenKind kind) {
    return kind == TokenKind::Separator || kind == TokenKind::EndOfSource || kind == TokenKind::End ||
           kind == TokenKind::Else || kind == TokenKind::Elsif;
}

// The code of a binary operator of one level of precedence; Pop for any other token.
OpCode comparisonOperator(TokenKind kind) {
    switch (kind) {
        case TokenKind::Equal:
            return OpCode::Equal;
        case TokenKind::NotEqual:
            return OpCode::NotEqual;
        case TokenKind::Less:
            return OpCode::Less;
        case TokenKind::LessEqual:
            return OpCode::LessEqual;
        case TokenKind::Greater:
            return OpCode::Greater;
        case TokenKind::GreaterEqual:
            return OpCode::GreaterEqual;
        default:
            return OpCode::Pop;
    }
}

OpCode additiveOperator(TokenKind kind) {
    if (kind == TokenKind::Plus) return OpCode::Add;
    return kind == TokenKind::Minus ? OpCode::Subtract : OpCode::Pop;
}

OpCode factorOperator(TokenKind kind) {
    if (kind == TokenKind::Star) return OpCode::Multiply;
    if (kind == TokenKind::Slash) return OpCode::Divide;
    return kind == TokenKind::Percent ? OpCode::Modulo : OpCode::Pop;
}

OpCode andOperator(TokenKind kind) {
    return kind == TokenKind::And ? OpCode::And : OpCode::Pop;
}

OpCode orOperator(TokenKind kind) {
    return kind == TokenKind::Or ? OpCode::Or : OpCode::Pop;
}

// One pass over the tokens, straight to instructions.
class Compiler {
public:
    Compiler(std::string_view source, std::string_view chunkName, const kelmora::NativeStack& stack)
        : lexer_(source, chunkName),
          chunkName_(chunkName),
          stack_(stack),
          program_(kelmora::makeRef<Program>()),
          constants_(program_->constants) {}

    kelmora::Ref<Program> run() {
        program_->sourceName = chunkName_;
        program_->functions.emplace_back().name = "<main>";
        try {
            token_ = lexer_.next();
            next_ = lexer_.next();
            compileBlock();
            if (!at(TokenKind::EndOfSource)) fail("expected expression");
        } catch (const kelmora::guest::GuestError&) {
            throw;
        } catch (const std::runtime_error& error) {
            fail(error.what());
        }
        return program_;
    }

private:
    [[noreturn]] void fail(std::string_view message) const {
        kelmora::guest::failParse(chunkName_, token_.place, message);
    }
    bool at(TokenKind kind) const { return token_.kind == kind; }
    Token advance() {
        Token taken = std::move(token_);
        token_ = std::move(next_);
        next_ = lexer_.next();
        return taken;
    }
    bool accept(TokenKind kind) {
        if (!at(kind)) return false;
        advance();
        return true;
    }
    Token expect(TokenKind kind, std::string_view message) {
        if (!at(kind)) fail(message);
        return advance();
    }
    void skipSeparators() {
        while (at(TokenKind::Separator)) advance();
    }

    std::vector<Instruction>& code() { return program_->functions[function_].instructions; }
    std::int32_t here() { return static_cast<std::int32_t>(code().size()); }
    void emit(OpCode op, std::uint32_t line, std::int32_t a = 0, std::int32_t b = 0) {
        if (code().size() >= INT32_MAX) fail("the function is too long");
        code().push_back({op, a, b, line});
    }
    std::int32_t emitJump(OpCode op, std::uint32_t line) {
        emit(op, line, -1);
        return here() - 1;
    }
    void patch(std::int32_t jump) { code()[static_cast<std::size_t>(jump)].a = here(); }

    void compileBlock() {
        stack_.check();
        for (skipSeparators(); !endsStatement(token_.kind); skipSeparators()) compileStatement();
    }

    void compileStatement() {
        switch (token_.kind) {
            case TokenKind::If:
                compileIf();
                break;
            case TokenKind::While:
                compileWhile();
                break;
            case TokenKind::Def:
                compileFunction();
                break;
            case TokenKind::Return:
                compileReturn();
                break;
            case TokenKind::Name:
                if (next_.kind == TokenKind::Assign) {
                    compileAssignment();
                    break;
                }
                if (next_.kind == TokenKind::OpenBracket) {
                    compileIndexedAssignment();
                    break;
                }
                [[fallthrough]];
            default:
                const std::uint32_t line = token_.place.line;
                compileExpression();
                emit(OpCode::Pop, line);
        }
    }

    void compileAssignedValue() {
        if (endsStatement(token_.kind)) fail("assignment requires a value");
        compileExpression();
    }

    void compileAssignment() {
        const Token name = advance();
        advance();
        compileAssignedValue();
        emit(OpCode::StoreName, name.place.line, constants_.text(name.text));
    }

    void compileIndexedAssignment() {
        const Token name = expect(TokenKind::Name, "expected variable name");
        const std::int32_t constant = constants_.text(name.text);
        emit(OpCode::LoadName, name.place.line, constant);
        expect(TokenKind::OpenBracket, "expected '[' after indexed assignment target");
        std::int32_t changedName = constant + 1;
        for (;;) {
            compileExpression();
            const Token bracket = expect(TokenKind::CloseBracket, "expected ']' after index expression");
            if (!accept(TokenKind::OpenBracket)) break;
            emit(OpCode::Index, bracket.place.line);
            changedName = 0;
        }
        const Token assign = expect(TokenKind::Assign, "expected '=' after index expression");
        compileAssignedValue();
        emit(OpCode::SetIndex, assign.place.line, changedName);
    }

    void compileIf() {
        std::vector<std::int32_t> ends;
        for (;;) {
            const std::uint32_t line = advance().place.line;  // if or elsif
            compileExpression();
            if (!accept(TokenKind::Then)) accept(TokenKind::Separator);
            const std::int32_t otherwise = emitJump(OpCode::JumpIfFalse, line);
            compileBlock();
            ends.push_back(emitJump(OpCode::Jump, token_.place.line));
            patch(otherwise);
            if (!at(TokenKind::Elsif)) break;
        }
        if (accept(TokenKind::Else)) compileBlock();
        expect(TokenKind::End, "expected 'end' after if block");
        for (const std::int32_t jump : ends) patch(jump);
    }

    void compileWhile() {
        const std::uint32_t line = advance().place.line;
        const std::int32_t start = here();
        compileExpression();
        const std::int32_t exit = emitJump(OpCode::JumpIfFalse, line);
        compileBlock();
        emit(OpCode::Jump, token_.place.line, start);
        expect(TokenKind::End, "expected 'end' after while block");
        patch(exit);
    }

    std::vector<std::string> compileParameters() {
        std::vector<std::string> parameters;
        if (!accept(TokenKind::OpenParenthesis)) return parameters;
        while (!at(TokenKind::CloseParenthesis)) {
            parameters.push_back(expect(TokenKind::Name, "expected parameter name").text);
            if (!accept(TokenKind::Comma)) break;
            if (at(TokenKind::CloseParenthesis)) fail("expected parameter name");
        }
        expect(TokenKind::CloseParenthesis, "expected ')' after parameter list");
        return parameters;
    }

    void compileFunction() {
        const std::uint32_t line = advance().place.line;
        const Token name = expect(TokenKind::Name, "expected function name after 'def'");
        const std::size_t enclosing = function_;
        function_ = program_->functions.size();
        program_->functions.emplace_back().name = name.text;
        program_->functions[function_].parameters = compileParameters();
        compileBlock();
        expect(TokenKind::End, "expected 'end' after function body");
        const auto defined = static_cast<std::int32_t>(function_);
        function_ = enclosing;
        emit(OpCode::DefineFunction, line, constants_.text(name.text), defined);
    }

    void compileReturn() {
        const std::uint32_t line = advance().place.line;
        if (startsExpression(token_.kind)) {
            compileExpression();
        } else {
            emit(OpCode::PushConstant, line, constants_.plain(RubyValue()));
        }
        emit(OpCode::Return, line);
    }

    // One level of left associative operators: `operand`s with codes of `operatorOf` between them.
    template <typename Operand, typename OperatorOf>
    void compileLevel(Operand operand, OperatorOf operatorOf) {
        (this->*operand)();
        for (OpCode op = operatorOf(token_.kind); op != OpCode::Pop; op = operatorOf(token_.kind)) {
            const std::uint32_t line = advance().place.line;
            (this->*operand)();
            emit(op, line);
        }
    }

    void compileExpression() {
        stack_.check();
        compileLevel(&Compiler::compileAnd, orOperator);
    }
    void compileAnd() { compileLevel(&Compiler::compileComparison, andOperator); }
    void compileComparison() { compileLevel(&Compiler::compileAdditive, comparisonOperator); }
    void compileAdditive() { compileLevel(&Compiler::compileFactor, additiveOperator); }
    void compileFactor() { compileLevel(&Compiler::compileUnary, factorOperator); }

    void compileUnary() {
        if (!at(TokenKind::Minus) && !at(TokenKind::Not)) {
            compilePrimary();
            return;
        }
        stack_.check();
        const OpCode op = at(TokenKind::Minus) ? OpCode::Negate : OpCode::Not;
        const std::uint32_t line = advance().place.line;
        compileUnary();
        emit(op, line);
    }

    void compilePrimary() {
        compileStart();
        while (at(TokenKind::OpenBracket)) {
            const std::uint32_t line = advance().place.line;
            compileExpression();
            expect(TokenKind::CloseBracket, "expected ']' after index expression");
            emit(OpCode::Index, line);
        }
    }

    void compileStart() {
        const std::uint32_t line = token_.place.line;
        switch (token_.kind) {
            case TokenKind::Name:
                emit(OpCode::LoadName, line, constants_.text(advance().text));
                if (accept(TokenKind::OpenParenthesis)) {
                    const std::int32_t count =
                        compileItems(TokenKind::CloseParenthesis, "expected ')' after arguments");
                    emit(OpCode::Call, line, count);
                }
                break;
            case TokenKind::OpenBracket: {
                advance();
                const std::int32_t count =
                    compileItems(TokenKind::CloseBracket, "expected ']' after array literal");
                emit(OpCode::MakeArray, line, count);
                break;
            }
            case TokenKind::OpenParenthesis:
                advance();
                compileExpression();
                expect(TokenKind::CloseParenthesis, "expected ')' after expression");
                break;
            default:
                emit(OpCode::PushConstant, line, compileConstant());
        }
    }

    std::int32_t compileItems(TokenKind close, std::string_view message) {
        std::int32_t count = 0;
        while (!at(close)) {
            compileExpression();
            ++count;
            if (!accept(TokenKind::Comma)) break;
        }
        expect(close, message);
        return count;
    }

    std::int32_t compileConstant() {
        const Token token = startsExpression(token_.kind) ? advance() : token_;
        switch (token.kind) {
            case TokenKind::Integer: {
                std::int64_t value = 0;
                return kelmora::parseIntStrict(token.text, value) ? constants_.integer(value)
                                                                  : numberConstant(token);
            }
            case TokenKind::Float:
                return numberConstant(token);
            case TokenKind::String:
                return constants_.text(token.text);
            case TokenKind::True:
            case TokenKind::False:
                return constants_.plain(RubyValue::boolean(token.kind == TokenKind::True));
            case TokenKind::Nil:
                return constants_.plain(RubyValue());
            default:
                fail("expected expression");
        }
    }
    // An integer that 64 bits do not hold is a float.
    std::int32_t numberConstant(const Token& token) {
        double value = 0;
        if (!kelmora::parseDoubleStrict(token.text, value))
            kelmora::guest::failParse(chunkName_, token.place, "number is out of range");
        return constants_.number(value);
    }

    Lexer lexer_;
    std::string_view chunkName_;
    const kelmora::NativeStack& stack_;
    kelmora::Ref<Program> program_;
    ConstantTable constants_;
    Token token_;
    Token next_;
    std::size_t function_ = 0;  // the one that takes the code
};

}  // namespace

kelmora::Ref<Program> compileSource(std::string_view source, std::string_view chunkName,
                                    const kelmora::NativeStack& stack) {
    return Compiler(source, chunkName, stack).run();
}

}  // namespace vesper::ruby
