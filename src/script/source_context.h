#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "script/parsed_line.h"

namespace kelmora {

// Where the interpreter is: the statement in hand, for error reports, and the source files it came from,
// for reports and for relative paths.
class SourceContext {
public:
    struct File {
        const std::string* directory;
        const std::string* path;
    };

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
    const std::string& directory() const { return *file_.directory; }
    const std::string& path() const { return *file_.path; }

    const File& file() const { return file_; }
    // The innermost source file from now on. Its names are borrowed.
    void setFile(const File& file) { file_ = file; }

    // Raises std::runtime_error with the five-line report that points at the token.
    [[noreturn]] void throwError(const std::string& message, std::string_view token) const;

private:
    static inline const std::string noText_;

    const ParsedScriptLine* line_ = nullptr;
    std::string_view statement_;
    std::uint32_t lineNumber_ = 0;  // of a statement without a record
    File file_{&noText_, &noText_};
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

// Makes a source file, whose names are borrowed, the innermost one, unless neither its directory nor its path
// is known.
class SourceFileGuard {
public:
    SourceFileGuard(SourceContext& context, const std::string& directory, const std::string& path)
        : context_(context), previous_(context.file()) {
        if (!directory.empty() || !path.empty()) context_.setFile({&directory, &path});
    }
    SourceFileGuard(const SourceFileGuard&) = delete;
    SourceFileGuard& operator=(const SourceFileGuard&) = delete;
    ~SourceFileGuard() { context_.setFile(previous_); }

private:
    SourceContext& context_;
    SourceContext::File previous_;
};

}  // namespace kelmora
