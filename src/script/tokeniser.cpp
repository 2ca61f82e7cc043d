#include <cctype>

#include "script/line_parser.h"
#include "script/source_context.h"

namespace kelmora {
namespace {

// Far above any written program, and low enough that a hostile line cannot fill the memory.
constexpr std::size_t maximumTokens = 1'000'000;

bool formsPair(char first, char second) {
    switch (first) {
        case '!':
        case '%':
        case '*':
        case '+':
        case '/':
        case '=':
        case '>':
        case '\\':
        case '^':
        case '~':
            return second == '=';
        case '-':
            return second == '=' || second == '>';
        case '<':
            return second == '=' || second == '-';
        case '&':
            return second == '&';
        case '|':
            return second == '|';
        default:
            return false;
    }
}

bool isSingleSign(char c) {
    return c != '\0' && std::string_view("!#%()*+,-/:;<=>[\\]^{}").find(c) != std::string_view::npos;
}

class Scanner {
public:
    Scanner(const std::string& statement, SourceContext& context) : text_(statement), context_(context) {
        tokens_.reserve(8 + std::min<std::size_t>(statement.size() / 4, 256));
    }

    std::vector<std::string> run() {
        while (at_ < text_.size() && step()) {
        }
        endWord();
        return std::move(tokens_);
    }

private:
    // One step of the scan; false at a comment.
    bool step() {
        const char c = text_[at_];
        const bool hasNext = at_ + 1 < text_.size();
        const char next = hasNext ? text_[at_ + 1] : '\0';
        if (c == '@' && hasNext && next == '@') return false;
        if (c == '"' || c == '\'') {
            takeString(c);
        } else if (std::isspace(static_cast<unsigned char>(c)) != 0) {
            endWord();
            ++at_;
        } else if (hasNext && formsPair(c, next)) {
            emitSign(2);
        } else if (c == '#' && inWord() && next >= '0' && next <= '9') {
            ++at_;  // name#2 stays one word
        } else if (isSingleSign(c)) {
            emitSign(1);
        } else {
            if (!inWord()) wordStart_ = at_;
            ++at_;
        }
        return true;
    }

    bool inWord() const { return wordStart_ != std::string::npos; }

    void emit(std::string token) {
        if (tokens_.size() >= maximumTokens)
            context_.throwError("Statement has more than 1000000 tokens", "");
        tokens_.push_back(std::move(token));
    }
    void endWord() {
        if (!inWord()) return;
        emit(text_.substr(wordStart_, at_ - wordStart_));
        wordStart_ = std::string::npos;
    }
    void emitSign(std::size_t length) {
        endWord();
        emit(text_.substr(at_, length));
        at_ += length;
    }
    void takeString(char quote) {
        endWord();
        std::size_t end = at_ + 1;
        while (end < text_.size() && text_[end] != quote)
            end += text_[end] == '\\' ? std::size_t{2} : std::size_t{1};
        if (end >= text_.size())
            context_.throwError("Unterminated string literal", std::string_view(text_).substr(at_));
        emit(text_.substr(at_, end + 1 - at_));
        at_ = end + 1;
    }

    const std::string& text_;
    SourceContext& context_;
    std::vector<std::string> tokens_;
    std::size_t at_ = 0;
    std::size_t wordStart_ = std::string::npos;
};

}  // namespace

std::vector<std::string> tokenise(const std::string& statement, SourceContext& context) {
    context.setStatement(statement);
    return Scanner(statement, context).run();
}

}  // namespace kelmora
