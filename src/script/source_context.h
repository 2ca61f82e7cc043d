#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "script/parsed_line.h"
#include "script/source_file.h"

namespace kelmora {

// Where the interpreter is: the statement in hand, for error reports, and the source files it came from,
// for reports and for relative paths.
class SourceContext {
public:
    // The statement that runs now; it must outlive its turn.
    void setLine(const ParsedScriptLine& line) { line_ = &line; }
    const ParsedScriptLine* line() const { return line_; }
    // Puts back what line() gave.
    void restoreLine(const ParsedScriptLine* line) {
        line_ = line;
        if (!line) statement_ = {};
    }
    void setLineNumber(std::uint32_t lineNumber) { lineNumber_ = lineNumber; }
    // A statement that has no record yet.
    void setStatement(std::string_view text) {
        line_ = nullptr;
        statement_ = text;
    }

    // Of the innermost source file, empty without one.
    const std::string& directory() const { return file_->directory; }
    const std::string& path() const { return file_->path; }

    const SourceFile& file() const { return *file_; }
    // The innermost source file from now on, which is borrowed.
    void setFile(const SourceFile& file) { file_ = &file; }

    // Raises std::runtime_error with the five-line report that points at the token.
    [[noreturn]] void throwError(const std::string& message, std::string_view token) const;

private:
    static inline const SourceFile noFile_;

    const ParsedScriptLine* line_ = nullptr;
    std::string_view statement_;
    std::uint32_t lineNumber_ = 0;  // of a statement without a record
    const SourceFile* file_ = &noFile_;
};

// Puts the statement in hand back when a call or a nested run is over.
class SourceLineGuard {
public:
    explicit SourceLineGuard(SourceContext& context) : context_(context), line_(context.line()) {}
    SourceLineGuard(const SourceLineGuard&) = delete;
    SourceLineGuard& operator=(const SourceLineGuard&) = delete;
    ~SourceLineGuard() { context_.restoreLine(line_); }

private:
    SourceContext& context_;
    const ParsedScriptLine* line_;
};

// Makes a source file, which is borrowed, the innermost one if it is known.
class SourceFileGuard {
public:
    SourceFileGuard(SourceContext& context, const SourceFile& file)
        : context_(context), previous_(context.file()) {
        if (file.isKnown()) context_.setFile(file);
    }
    SourceFileGuard(const SourceFileGuard&) = delete;
    SourceFileGuard& operator=(const SourceFileGuard&) = delete;
    ~SourceFileGuard() { context_.setFile(previous_); }

private:
    SourceContext& context_;
    const SourceFile& previous_;
};

}  // namespace kelmora
