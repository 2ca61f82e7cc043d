#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "plush/shader/tokeniser.h"

namespace kelmora::plush_shader::detail {

// Reads a token list from front to back; failures name the line of the token it stands at.
class TokenCursor {
public:
    explicit TokenCursor(std::vector<Token> tokens) : tokens_(std::move(tokens)) {}

    // The last token, the end of input, stays in front for ever.
    const Token& token() const { return tokens_[at_]; }
    const Token& following() const { return tokens_[std::min(at_ + 1, tokens_.size() - 1)]; }
    void advance() {
        if (at_ + 1 < tokens_.size()) ++at_;
    }

    bool isKind(TokenKind kind) const { return token().kind == kind; }
    bool isName(std::string_view text) const { return isKind(TokenKind::Name) && token().text == text; }
    bool isSymbol(std::string_view text) const { return isKind(TokenKind::Symbol) && token().text == text; }
    // Where a run of statements ends.
    bool isBlockEnd() const {
        return isKind(TokenKind::InputEnd) || isName("end") || isName("else") || isName("elseif");
    }

    bool acceptName(std::string_view text) { return advanceIf(isName(text)); }
    bool acceptSymbol(std::string_view text) { return advanceIf(isSymbol(text)); }
    void requireSymbol(std::string_view text) {
        if (!acceptSymbol(text)) fail("expected '" + std::string(text) + "' but found " + quoted());
    }
    std::string requireName(std::string_view otherwise) {
        if (!isKind(TokenKind::Name)) fail(otherwise);
        std::string name = token().text;
        advance();
        return name;
    }

    // The token as messages show it, in quotes.
    std::string quoted() const {
        switch (token().kind) {
            case TokenKind::StatementEnd:
                return "'end of line'";
            case TokenKind::InputEnd:
                return "'end of shader'";
            default:
                return "'" + token().text + "'";
        }
    }
    [[noreturn]] void fail(std::string_view message) const { raiseShaderError(token().line, message); }

    // Held by whatever can hold itself, blocks and operands.
    class Nesting {
    public:
        explicit Nesting(TokenCursor& cursor) : cursor_(cursor) {
            if (cursor.depth_ == nestingLimit) cursor.fail("shader is nested too deeply");
            ++cursor.depth_;
        }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;
        ~Nesting() { --cursor_.depth_; }

    private:
        TokenCursor& cursor_;
    };

private:
    // Keeps the compiler's recursion within a small part of a 1 MiB stack.
    static constexpr std::uint32_t nestingLimit = 200;

    bool advanceIf(bool condition) {
        if (condition) advance();
        return condition;
    }

    std::vector<Token> tokens_;
    std::size_t at_ = 0;
    std::uint32_t depth_ = 0;
};

}  // namespace kelmora::plush_shader::detail
