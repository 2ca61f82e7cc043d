#include <algorithm>

#include "script/line_parser.h"
#include "script/open_brackets.h"
#include "script/source_context.h"

namespace kelmora {
namespace {

std::string_view trimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") + 1 - first);
}

// Cuts a source into statements. A statement ends with its physical line unless a string or a bracket
// is still open, and at a `;` outside of both.
class LineSplitter {
public:
    LineSplitter(const std::string& source, SourceContext& context) : source_(source), context_(context) {
        const auto lineFeeds = std::count(source.begin(), source.end(), '\n');
        lines_.reserve(static_cast<std::size_t>(lineFeeds) + 1);
        pending_.reserve(std::min<std::size_t>(256, source.size()));
    }

    std::vector<ParsedScriptLine> run() {
        std::size_t start = 0;
        while (start <= source_.size()) {
            std::size_t end = source_.find('\n', start);
            if (end == std::string::npos) {
                if (start == source_.size()) break;
                end = source_.size();
            }
            takePhysicalLine(std::string_view(source_).substr(start, end - start));
            start = end + 1;
            ++lineIndex_;
        }
        if (!pending_.empty()) flush();
        return std::move(lines_);
    }

private:
    void takePhysicalLine(std::string_view line) {
        if (pending_.empty() && (line.empty() || line.starts_with("@@"))) {
            ParsedScriptLine empty;
            empty.lineNumber = lineIndex_;
            lines_.push_back(std::move(empty));
            return;
        }
        std::size_t cut = 0;
        std::size_t at = 0;
        for (; at < line.size(); ++at) {
            const char c = line[at];
            if (quote_ != '\0') {
                scanStringByte(c);
            } else if (c == '@' && at + 1 < line.size() && line[at + 1] == '@') {
                break;
            } else if (c == ';' && !bracketOpen()) {
                append(line.substr(cut, at - cut));
                if (!pending_.empty()) flush();
                cut = at + 1;
            } else {
                scanCodeByte(c);
            }
        }
        append(line.substr(cut, at - cut));
        if (!pending_.empty() && quote_ == '\0' && !bracketOpen()) flush();
    }

    void scanStringByte(char c) {
        if (escaped_) {
            escaped_ = false;
        } else if (c == '\\') {
            escaped_ = true;
        } else if (c == quote_) {
            quote_ = '\0';
        }
    }
    void scanCodeByte(char c) {
        if (c == '"' || c == '\'') {
            quote_ = c;
        } else {
            open_.take(c);
        }
    }
    bool bracketOpen() const { return open_.count() > 0; }

    void append(std::string_view part) {
        part = trimBlanks(part);
        if (part.empty()) return;
        if (pending_.empty()) {
            pendingLine_ = lineIndex_;
        } else {
            pending_ += ' ';
        }
        pending_ += part;
    }

    void flush() {
        ParsedScriptLine line;
        line.text = pending_;
        line.lineNumber = pendingLine_;
        context_.setLineNumber(pendingLine_);
        line.tokens = tokenise(line.text, context_);
        line.analysis.reserve(line.tokens.size());
        for (const std::string& token : line.tokens) line.analysis.push_back(analyseToken(token));
        lines_.push_back(std::move(line));
        pending_.clear();
        quote_ = '\0';
        escaped_ = false;
        open_ = {};
    }

    const std::string& source_;
    SourceContext& context_;
    std::vector<ParsedScriptLine> lines_;
    std::string pending_;
    std::uint32_t lineIndex_ = 0;
    std::uint32_t pendingLine_ = 0;
    char quote_ = '\0';
    bool escaped_ = false;
    OpenBrackets open_;
};

}  // namespace

std::vector<ParsedScriptLine> parseLines(const std::string& source, SourceContext& context) {
    const SourceLineGuard guard(context);
    std::vector<ParsedScriptLine> lines = LineSplitter(source, context).run();
    prepareParsedLines(lines);
    return lines;
}

}  // namespace kelmora
