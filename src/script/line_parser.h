#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "script/parsed_line.h"

namespace kelmora {

class SourceContext;

// Splits a source into statements and tokenises each. Raises only for a string without an end, a
// statement with too many tokens, and labels that are no string literals.
std::vector<ParsedScriptLine> parseLines(const std::string& source, SourceContext& context);

// The tokens of one statement. The context is told the statement for its error reports.
std::vector<std::string> tokenise(const std::string& statement, SourceContext& context);

// Fills the fields that a line derives from its tokens: its kind, its expressions, its header. May be run
// again.
void prepareLine(ParsedScriptLine& line);
// Links the openers of blocks to their closers. A closer without an opener leaves no trace: the opener that
// lacks its closer reports it when it is compiled or run.
void linkBlocks(std::vector<ParsedScriptLine>& lines);
// Both.
void prepareParsedLines(std::vector<ParsedScriptLine>& lines);

}  // namespace kelmora
