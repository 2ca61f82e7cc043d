#include "workbench/source_tokens.h"

#include <algorithm>
#include <cctype>

#include "script/open_brackets.h"

namespace kelmora {
namespace {

bool formsPair(char first, char second) {
    switch (first) {
        case '-':
            return second == '=' || second == '>';
        case '<':
            return second == '=' || second == '-';
        case '&':
        case '|':
            return second == first;
        default:
            return second == '=' && std::string_view("!%*+/=>\\^~").find(first) != std::string_view::npos;
    }
}

bool isSingleSign(char c) {
    return c != '\0' && std::string_view("!#%()*+,-/:;<=>[\\]^{}").find(c) != std::string_view::npos;
}

bool isBlank(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

class SourceScanner {
public:
    explicit SourceScanner(std::string_view source) : source_(source) { tokens_.reserve(source.size() / 5); }

    std::vector<SourceToken> run() {
        while (at_ < source_.size()) step();
        return std::move(tokens_);
    }

private:
    char peek(std::size_t ahead) const { return at_ + ahead < source_.size() ? source_[at_ + ahead] : '\0'; }

    void step() {
        const char c = source_[at_];
        if (c == '\n') {
            ++at_;
            nextLine();
        } else if (isBlank(c)) {
            ++at_;
        } else if (c == '@' && peek(1) == '@') {
            std::size_t end = std::min(source_.find('\n', at_), source_.size());
            if (source_[end - 1] == '\r') --end;
            add(SourceTokenKind::Comment, end);
        } else if (c == '"' || c == '\'') {
            takeString(c);
        } else if (formsPair(c, peek(1))) {
            add(SourceTokenKind::Sign, at_ + 2);
        } else if (isSingleSign(c)) {
            takeSign(c);
        } else {
            takeWord();
        }
    }
    void nextLine() {
        ++line_;
        lineStart_ = at_;
        if (open_.count() == 0) inStatement_ = false;
    }

    // The token that begins here; the scan goes on behind it.
    SourceToken& add(SourceTokenKind kind, std::size_t end) {
        SourceToken token;
        token.kind = kind;
        token.begin = static_cast<std::uint32_t>(at_);
        token.end = static_cast<std::uint32_t>(end);
        token.line = line_;
        token.column = static_cast<std::uint32_t>(at_ - lineStart_);
        token.openBrackets = open_.count();
        if (kind != SourceTokenKind::Comment) {
            token.startsStatement = !inStatement_;
            inStatement_ = true;
        }
        tokens_.push_back(token);
        at_ = end;
        return tokens_.back();
    }
    void takeString(char quote) {
        std::size_t end = at_ + 1;
        while (end < source_.size() && source_[end] != quote) end += source_[end] == '\\' ? 2u : 1u;
        const bool isClosed = end < source_.size();
        const std::size_t begin = at_;
        add(SourceTokenKind::String, isClosed ? end + 1 : source_.size()).isClosed = isClosed;
        for (std::size_t i = begin; i < at_; ++i) {
            if (source_[i] != '\n') continue;
            ++line_;
            lineStart_ = i + 1;
        }
    }
    void takeSign(char c) {
        const bool endsStatement = c == ';' && open_.count() == 0;
        SourceToken& token = add(SourceTokenKind::Sign, at_ + 1);
        if (endsStatement) {
            token.startsStatement = inStatement_ = false;
            return;
        }
        open_.take(c);
    }
    void takeWord() {
        std::size_t end = at_ + 1;
        for (; end < source_.size(); ++end) {
            const char c = source_[end];
            const char next = end + 1 < source_.size() ? source_[end + 1] : '\0';
            if (c == '#' && next >= '0' && next <= '9') continue;
            if (isBlank(c) || c == '"' || c == '\'' || isSingleSign(c) || formsPair(c, next) ||
                (c == '@' && next == '@'))
                break;
        }
        add(SourceTokenKind::Word, end);
    }

    std::string_view source_;
    std::vector<SourceToken> tokens_;
    std::size_t at_ = 0;
    std::size_t lineStart_ = 0;
    std::uint32_t line_ = 0;
    bool inStatement_ = false;
    OpenBrackets open_;
};

}  // namespace

std::vector<SourceToken> scanSource(std::string_view source) {
    return SourceScanner(source).run();
}

}  // namespace kelmora
