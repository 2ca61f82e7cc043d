#include "workbench/formatter.h"

#include <algorithm>
#include <array>
#include <vector>

#include "workbench/source_tokens.h"
#include "workbench/token_spacing.h"

namespace kelmora {
namespace {

constexpr std::uint32_t indentWidth = 4;
constexpr std::uint32_t maximumLevel = 100;  // deeper lines stay there

enum class BlockStep : std::uint8_t { None, Open, Branch, Close };

struct OpenBracket {
    std::uint32_t line = 0;
    std::uint32_t level = 0;  // lines with open brackets, up to this one
};

struct PlacedComment {
    const SourceToken* token = nullptr;
    std::size_t made = 0;  // its new column
    bool isBehindCode = false;
};

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}
bool isAllBlank(std::string_view text) {
    return std::all_of(text.begin(), text.end(), isBlank);
}

class Formatter {
public:
    explicit Formatter(std::string_view source) : source_(source), tokens_(scanSource(source)) {
        made_.reserve(source.size() + source.size() / 8);
    }

    FormattedSource run() {
        if (auto fault = findFault()) return {std::string(source_), std::move(fault)};
        for (std::size_t start = 0; start < source_.size();) {
            const std::size_t feed = source_.find('\n', start);
            const std::size_t end = std::min(feed, source_.size());
            line(start, end);
            if (feed != std::string_view::npos) made_ += '\n';
            start = end + 1;
        }
        return {std::move(made_), std::nullopt};
    }

private:
    std::string_view text(std::size_t token) const { return textOf(source_, tokens_[token]); }
    bool isBracket(std::size_t token, std::string_view kinds) const {
        return tokens_[token].kind == SourceTokenKind::Sign &&
               kinds.find(text(token)) != std::string_view::npos;
    }

    BlockStep stepOf(std::size_t token) const {
        if (!tokens_[token].startsStatement || tokens_[token].kind != SourceTokenKind::Word)
            return BlockStep::None;
        static constexpr std::array<std::string_view, 6> openers{"if",  "while",    "repeat",
                                                                 "for", "function", "nest"};
        const std::string_view word = text(token);
        if (std::find(openers.begin(), openers.end(), word) != openers.end()) return BlockStep::Open;
        if (word == "end" || word == "until") return BlockStep::Close;
        if (word == "else" || word == "elseif") return BlockStep::Branch;
        const bool isQualified = word == "local" || word == "native" || word == "decay";
        if (isQualified && token + 1 < tokens_.size() && !tokens_[token + 1].startsStatement &&
            text(token + 1) == "function")
            return BlockStep::Open;
        return BlockStep::None;
    }

    std::optional<FormatFault> findFault() const {
        std::vector<std::uint32_t> blocks;
        std::vector<std::uint32_t> brackets;
        for (std::size_t i = 0; i < tokens_.size(); ++i) {
            const SourceToken& token = tokens_[i];
            if (!token.isClosed) return FormatFault{token.line, "the string has no end"};
            if (token.startsStatement) brackets.clear();
            if (isBracket(i, "([{")) brackets.push_back(token.line);
            if (isBracket(i, ")]}") && !brackets.empty()) brackets.pop_back();
            const BlockStep step = stepOf(i);
            if (step == BlockStep::Open) blocks.push_back(token.line);
            if (step == BlockStep::Branch || step == BlockStep::Close) {
                if (blocks.empty())
                    return FormatFault{token.line,
                                       "'" + std::string(text(i)) + "' without a block that it belongs to"};
                if (step == BlockStep::Close) blocks.pop_back();
            }
        }
        if (!brackets.empty()) return FormatFault{brackets.back(), "the bracket is not closed"};
        if (!blocks.empty()) return FormatFault{blocks.back(), "the block has no end"};
        return std::nullopt;
    }

    // A physical line; the tokens from next_ on begin on it or behind it.
    void line(std::size_t start, std::size_t end) {
        const std::size_t first = next_;
        while (next_ < tokens_.size() && tokens_[next_].begin < end) ++next_;
        const bool startsInString = first > 0 && tokens_[first - 1].end > start;
        if (startsInString) {
            made_ += source_.substr(start, end - start);
            for (std::size_t i = first; i < next_; ++i) follow(i);
            return;
        }
        if (first == next_) {
            appendLineEnd(start, end);
            return;
        }
        const std::string_view lead = source_.substr(start, tokens_[first].begin - start);
        if (isAllBlank(lead)) {
            made_.append(leadOf(first, lead), ' ');
        } else {
            made_ += lead;
        }
        for (std::size_t i = first; i < next_; ++i) {
            if (i > first) appendGap(i);
            if (tokens_[i].kind == SourceTokenKind::Comment) noteComment(tokens_[i], i > first);
            made_ += source_.substr(tokens_[i].begin,
                                    std::min<std::size_t>(tokens_[i].end, end) - tokens_[i].begin);
            follow(i);
        }
        if (tokens_[next_ - 1].end < end) appendLineEnd(tokens_[next_ - 1].end, end);
    }

    // What stands behind a line's last token, or on a line without one.
    void appendLineEnd(std::size_t start, std::size_t end) {
        std::string_view rest = source_.substr(start, end - start);
        const bool hasReturn = rest.ends_with('\r');
        if (hasReturn) rest.remove_suffix(1);
        if (!isAllBlank(rest)) made_ += rest;
        if (hasReturn) made_ += '\r';
    }

    void appendGap(std::size_t token) {
        const SourceToken& left = tokens_[token - 1];
        const SourceToken& right = tokens_[token];
        const std::string_view gap = source_.substr(left.end, right.begin - left.end);
        if (!isAllBlank(gap)) {
            made_ += gap;
            return;
        }
        Spacing spacing = spacingBetween(source_, left, isPrefix_, right);
        if (spacing == Spacing::None && !gap.empty() && !canTouch(source_, left, right))
            spacing = Spacing::One;
        if (spacing == Spacing::Keep) {
            const bool isComment = right.kind == SourceTokenKind::Comment;
            made_ += isComment && !gap.empty() ? gap : std::string_view(" ", isComment || !gap.empty());
        } else if (spacing == Spacing::One) {
            made_ += ' ';
        }
    }

    void noteComment(const SourceToken& token, bool isBehindCode) {
        const bool continues = continuesComment(token);
        lastComment_ = {&token, made_.size() - (made_.rfind('\n') + 1), isBehindCode || continues};
    }
    bool continuesComment(const SourceToken& token) const {
        return lastComment_.isBehindCode && lastComment_.token->line + 1 == token.line &&
               lastComment_.token->column == token.column;
    }
    // Blanks in front of a line that begins with the token.
    std::size_t leadOf(std::size_t token, std::string_view lead) const {
        const SourceToken& first = tokens_[token];
        // A comment below one behind code goes on with that.
        if (first.kind == SourceTokenKind::Comment && continuesComment(first)) return lastComment_.made;
        return std::size_t{std::min(levelOf(token, lead), maximumLevel)} * indentWidth;
    }
    // How deep a line is indented that begins with the token.
    std::uint32_t levelOf(std::size_t token, std::string_view lead) const {
        if (!brackets_.empty() && !tokens_[token].startsStatement) {
            std::size_t open = brackets_.size();
            // A line of closers stands where the line with their openers does.
            for (std::size_t i = token; open > 0 && i < next_ && isBracket(i, ")]}"); ++i) --open;
            const bool closes = open < brackets_.size();
            return statementLevel_ + (closes ? brackets_[open].level - 1 : brackets_.back().level);
        }
        if (tokens_[token].kind != SourceTokenKind::Comment) return outer(stepOf(token));
        // A comment in front of a closer or a branch may belong to what it closes, or to the branch.
        std::size_t code = token;
        while (code < tokens_.size() && tokens_[code].kind == SourceTokenKind::Comment) ++code;
        if (code == tokens_.size()) return depth_;
        const std::uint32_t outside = outer(stepOf(code));
        return widthOf(lead) <= outside * indentWidth ? outside : depth_;
    }
    // The level of a statement that takes this step.
    std::uint32_t outer(BlockStep step) const {
        return step == BlockStep::Branch || step == BlockStep::Close ? depth_ - 1 : depth_;
    }
    static std::uint32_t widthOf(std::string_view lead) {
        std::uint32_t width = 0;
        for (const char c : lead) width += c == '\t' ? indentWidth : 1;
        return width;
    }

    // Keeps count of blocks and brackets behind the token.
    void follow(std::size_t token) {
        const BlockStep step = stepOf(token);
        if (tokens_[token].startsStatement) {
            brackets_.clear();
            statementLevel_ = outer(step);
            lastCode_ = nullptr;
        }
        if (step == BlockStep::Open) ++depth_;
        if (step == BlockStep::Close) --depth_;
        if (isBracket(token, "([{")) {
            const bool sameLine = !brackets_.empty() && brackets_.back().line == tokens_[token].line;
            const std::uint32_t level = brackets_.empty() ? 0 : brackets_.back().level;
            brackets_.push_back({tokens_[token].line, sameLine ? level : level + 1});
        }
        if (isBracket(token, ")]}") && !brackets_.empty()) brackets_.pop_back();
        isPrefix_ = isPrefixSign(source_, lastCode_, tokens_[token]);
        if (tokens_[token].kind != SourceTokenKind::Comment) lastCode_ = &tokens_[token];
    }

    std::string_view source_;
    std::vector<SourceToken> tokens_;
    std::string made_;
    std::size_t next_ = 0;
    std::uint32_t depth_ = 0;
    std::uint32_t statementLevel_ = 0;
    std::vector<OpenBracket> brackets_;
    PlacedComment lastComment_;
    const SourceToken* lastCode_ = nullptr;
    bool isPrefix_ = false;
};

}  // namespace

FormattedSource formatSource(std::string_view source) {
    return Formatter(source).run();
}

}  // namespace kelmora
