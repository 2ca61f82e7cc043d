#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "script/parsed_line.h"

namespace kelmora {

// Where the interpreter is: the statement in hand, for error reports, and the source files it came from,
// for reports and for relative paths.
class SourceContext {
public:
    // The statement that runs now; it must outlive its turn.
    void setLine(const ParsedScriptLine& line) {
        line_ = &line;
        lineNumber_ = line.lineNumber;
    }
    const ParsedScriptLine* line() const { return line_; }
    void setLineNumber(std::uint32_t lineNumber) { lineNumber_ = lineNumber; }
    // A statement that has no record yet.
    void setStatement(std::string_view text) {
        line_ = nullptr;
        statement_ = text;
    }
    void clearLine() {
        line_ = nullptr;
        statement_ = {};
    }

    // Both strings are borrowed until popSource.
    void pushSource(const std::string& directory, const std::string& path) {
        files_.push_back({&directory, &path});
    }
    void popSource() { files_.pop_back(); }
    // Of the innermost source file, empty without one.
    const std::string& directory() const { return files_.empty() ? empty_ : *files_.back().directory; }
    const std::string& path() const { return files_.empty() ? empty_ : *files_.back().path; }

    // Raises std::runtime_error with the five-line report that points at the token.
    [[noreturn]] void throwError(const std::string& message, std::string_view token) const;

private:
    struct SourceFile {
        const std::string* directory;
        const std::string* path;
    };

    const ParsedScriptLine* line_ = nullptr;
    std::string_view statement_;
    std::uint32_t lineNumber_ = 0;
    std::vector<SourceFile> files_;
    const std::string empty_;
};

// Puts the statement in hand back when a call or a nested run is over.
class SourceLineGuard {
public:
    explicit SourceLineGuard(SourceContext& context) : context_(context), line_(context.line()) {}
    SourceLineGuard(const SourceLineGuard&) = delete;
    SourceLineGuard& operator=(const SourceLineGuard&) = delete;
    ~SourceLineGuard() {
        if (line_) {
            context_.setLine(*line_);
        } else {
            context_.clearLine();
        }
    }

private:
    SourceContext& context_;
    const ParsedScriptLine* line_;
};

// Makes a source file, whose names are borrowed, the innermost one, unless neither its directory nor its path
// is known.
class SourceFileGuard {
public:
    SourceFileGuard(SourceContext& context, const std::string& directory, const std::string& path)
        : context_(context), pushed_(!directory.empty() || !path.empty()) {
        if (pushed_) context_.pushSource(directory, path);
    }
    SourceFileGuard(const SourceFileGuard&) = delete;
    SourceFileGuard& operator=(const SourceFileGuard&) = delete;
    ~SourceFileGuard() {
        if (pushed_) context_.popSource();
    }

private:
    SourceContext& context_;
    bool pushed_;
};

}  // namespace kelmora
