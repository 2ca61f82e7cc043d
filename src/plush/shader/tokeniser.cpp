#include "plush/shader/tokeniser.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <stdexcept>

namespace kelmora::plush_shader::detail {
namespace {

constexpr std::array<std::string_view, 5> longSymbols{"==", "~=", "!=", "<=", ">="};
constexpr std::string_view symbols = "+-*/%^=<>(),[].#";

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

class Tokeniser {
public:
    explicit Tokeniser(std::string_view source) : source_(source) {}

    std::vector<Token> run() {
        while (at_ < source_.size()) takeNext();
        add(TokenKind::StatementEnd, "\n");
        add(TokenKind::InputEnd, "");
        return std::move(tokens_);
    }

private:
    char ahead(std::size_t distance = 0) const {
        return at_ + distance < source_.size() ? source_[at_ + distance] : '\0';
    }

    void takeNext() {
        const char c = ahead();
        if (isBlank(c)) {
            ++at_;
        } else if (c == '\n' || c == ';') {
            take(TokenKind::StatementEnd, 1);
            if (c == '\n') ++line_;
        } else if (c == '@' && ahead(1) == '@') {
            at_ = std::min(source_.find('\n', at_), source_.size());
        } else if (isDigit(c) || (c == '.' && isDigit(ahead(1)))) {
            takeNumber();
        } else if (isNameStart(c)) {
            std::size_t length = 1;
            while (isNameStart(ahead(length)) || isDigit(ahead(length))) ++length;
            take(TokenKind::Name, length);
        } else if (c == '"' || c == '\'') {
            takeString(c);
        } else {
            takeSymbol();
        }
    }

    void takeNumber() {
        std::size_t length = 1;
        while (isDigit(ahead(length)) || ahead(length) == '.') ++length;
        if (ahead(length) == 'e' || ahead(length) == 'E') {
            const bool isSigned = ahead(length + 1) == '+' || ahead(length + 1) == '-';
            const std::size_t digits = length + (isSigned ? 2 : 1);
            if (isDigit(ahead(digits))) {
                length = digits;
                while (isDigit(ahead(length))) ++length;
            }
        }
        take(TokenKind::Number, length);
        // A second point ends the value, not the token.
        tokens_.back().number = std::strtof(tokens_.back().text.c_str(), nullptr);
    }

    void takeString(char quote) {
        const std::size_t end = source_.find_first_of(quote == '"' ? "\"\n" : "'\n", at_ + 1);
        if (end == std::string_view::npos || source_[end] == '\n')
            raiseShaderError(line_, "unterminated string");
        add(TokenKind::String, source_.substr(at_ + 1, end - at_ - 1));
        at_ = end + 1;
    }

    void takeSymbol() {
        const std::string_view rest = source_.substr(at_);
        for (const std::string_view symbol : longSymbols)
            if (rest.starts_with(symbol)) return take(TokenKind::Symbol, symbol.size());
        if (symbols.find(rest.front()) == std::string_view::npos)
            raiseShaderError(line_, std::string("unexpected character '") + rest.front() + "'");
        take(TokenKind::Symbol, 1);
    }

    void take(TokenKind kind, std::size_t length) {
        add(kind, source_.substr(at_, length));
        at_ += length;
    }
    void add(TokenKind kind, std::string_view text) {
        tokens_.push_back({kind, std::string(text), 0, line_});
    }

    std::string_view source_;
    std::size_t at_ = 0;
    std::uint32_t line_ = 1;
    std::vector<Token> tokens_;
};

}  // namespace

std::vector<Token> tokenise(std::string_view source) {
    return Tokeniser(source).run();
}

void raiseShaderError(std::uint32_t line, std::string_view message) {
    throw std::runtime_error("shader line " + std::to_string(line) + ": " + std::string(message));
}

}  // namespace kelmora::plush_shader::detail
