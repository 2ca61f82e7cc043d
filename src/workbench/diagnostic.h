#pragma once

#include <cstdint>
#include <iosfwd>
#include <span>
#include <string>

namespace kelmora {

enum class Severity : std::uint8_t { Error, Warning };

// One fault of a source and its place. Lines and columns count from 1, columns in bytes.
struct Diagnostic {
    std::string path;
    std::uint32_t line = 1;
    std::uint32_t column = 1;
    std::uint32_t length = 1;  // of what is marked, within its line
    Severity severity = Severity::Error;
    std::string message;
    std::string hint;    // may be empty
    std::string source;  // the line
};

// As text, a few lines for each: place and message, the source line, a mark, the hint.
void printDiagnostics(std::span<const Diagnostic> diagnostics, std::ostream& out);
// As a JSON array of objects with the fields above, less the source.
void printDiagnosticsAsJson(std::span<const Diagnostic> diagnostics, std::ostream& out);

}  // namespace kelmora
