#include "script/source_context.h"

#include <stdexcept>

namespace kelmora {
namespace {

// A report quotes a statement whole up to this many bytes, and a part around the token beyond it.
constexpr std::size_t maximumQuote = 4096;

}  // namespace

void SourceContext::throwError(const std::string& message, std::string_view token) const {
    std::string_view text = line_ ? std::string_view(line_->text) : statement_;
    const bool pointed = !token.empty() && token != "EOF";
    std::size_t column = pointed ? text.find(token) : std::string_view::npos;
    if (text.size() > maximumQuote) {
        const std::size_t start =
            column == std::string_view::npos || column < maximumQuote / 2 ? 0 : column - maximumQuote / 2;
        text = text.substr(start, maximumQuote);
        if (column != std::string_view::npos) column -= start;
        token = token.substr(0, maximumQuote / 2);
    }

    std::string report = "VesperScript error: " + message + "\n  at ";
    report += path().empty() ? "line " : path() + ":";
    report += std::to_string((line_ ? line_->lineNumber : lineNumber_) + 1);
    if (pointed) report.append(", near token '").append(token).append("'");
    report.append("\n  ").append(text).append("\n  ");
    if (column == std::string_view::npos) {
        report.append(text.size(), ' ').append("^");
    } else {
        report.append(column, ' ').append("^");
        if (column + token.size() <= text.size()) report.append(token.size() - 1, '~');
    }
    report += "\n  hint: check spelling, operators, parentheses, and quote matching\n";
    throw std::runtime_error(report);
}

}  // namespace kelmora
