#include "workbench/diagnostic.h"

#include <array>
#include <cstdio>
#include <ostream>

namespace kelmora {
namespace {

const char* nameOf(Severity severity) {
    return severity == Severity::Error ? "error" : "warning";
}

std::string jsonText(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            std::array<char, 8> escape{};
            std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
            quoted += escape.data();
        } else {
            quoted += c;
        }
    }
    return quoted + '"';
}

// Blanks up to the mark, with the source's tabs, so that both lines shift alike.
std::string indentTo(const std::string& source, std::uint32_t column) {
    std::string blanks;
    for (std::uint32_t i = 0; i + 1 < column; ++i)
        blanks += i < source.size() && source[i] == '\t' ? '\t' : ' ';
    return blanks;
}

}  // namespace

void printDiagnostics(std::span<const Diagnostic> diagnostics, std::ostream& out) {
    for (const Diagnostic& diagnostic : diagnostics) {
        out << diagnostic.path << ':' << diagnostic.line << ':' << diagnostic.column << ": "
            << nameOf(diagnostic.severity) << ": " << diagnostic.message << '\n';
        if (!diagnostic.source.empty())
            out << "    " << diagnostic.source << "\n    " << indentTo(diagnostic.source, diagnostic.column)
                << '^' << std::string(diagnostic.length > 0 ? diagnostic.length - 1 : 0, '~') << '\n';
        if (!diagnostic.hint.empty()) out << "    hint: " << diagnostic.hint << '\n';
    }
}

void printDiagnosticsAsJson(std::span<const Diagnostic> diagnostics, std::ostream& out) {
    out << '[';
    const char* separator = "\n";
    for (const Diagnostic& diagnostic : diagnostics) {
        out << separator << "{\"path\": " << jsonText(diagnostic.path) << ", \"line\": " << diagnostic.line
            << ", \"column\": " << diagnostic.column << ", \"length\": " << diagnostic.length
            << ", \"severity\": \"" << nameOf(diagnostic.severity)
            << "\", \"message\": " << jsonText(diagnostic.message)
            << ", \"hint\": " << jsonText(diagnostic.hint) << '}';
        separator = ",\n";
    }
    out << (diagnostics.empty() ? "]\n" : "\n]\n");
}

}  // namespace kelmora
