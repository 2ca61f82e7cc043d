#include "workbench/changed_statements.h"

#include <set>
#include <utility>
#include <vector>

#include "script/line_parser.h"
#include "script/source_context.h"

namespace kelmora {
namespace {

struct Statement {
    std::string text;
    std::size_t firstLine;  // from 0
    std::size_t lastLine;
    bool mayRunAgain;
};

std::vector<std::string> linesOf(const std::string& source) {
    std::vector<std::string> lines;
    for (std::size_t at = 0; at <= source.size();) {
        const std::size_t end = std::min(source.find('\n', at), source.size());
        lines.push_back(source.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

// A local would belong to the run that made it.
bool mayRunAgain(const ParsedScriptLine& line) {
    if (isFunctionKind(line.kind)) return line.kind != ParsedLineKind::LocalFunction;
    return line.assignment && line.assignment->scopeTarget != ScopeTarget::Local;
}

bool opensBlock(ParsedLineKind kind) {
    return isFunctionKind(kind) || kind == ParsedLineKind::If || kind == ParsedLineKind::While ||
           kind == ParsedLineKind::Repeat || kind == ParsedLineKind::For || kind == ParsedLineKind::Nest;
}

std::vector<Statement> topStatements(const std::string& source, std::size_t lineCount) {
    SourceContext context;
    const std::vector<ParsedScriptLine> lines = parseLines(source, context);
    std::vector<Statement> statements;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const ParsedScriptLine& line = lines[i];
        if (line.kind == ParsedLineKind::Empty) continue;
        if (!statements.empty()) statements.back().lastLine = std::max<std::size_t>(line.lineNumber, 1) - 1;
        Statement made{line.text, line.lineNumber, lineCount - 1, mayRunAgain(line)};
        if (opensBlock(line.kind) && line.endIndex != noLine && line.endIndex > i)
            while (i < line.endIndex && i + 1 < lines.size()) made.text += "\n" + lines[++i].text;
        statements.push_back(std::move(made));
    }
    return statements;
}

std::multiset<std::string> textsOf(const std::string& source) {
    std::multiset<std::string> texts;
    try {
        for (Statement& each : topStatements(source, linesOf(source).size()))
            texts.insert(std::move(each.text));
    } catch (const std::exception&) {
        texts.clear();  // what could not be read has not run either
    }
    return texts;
}

}  // namespace

std::string changedStatements(const std::string& source, const std::string& before) {
    const std::vector<std::string> lines = linesOf(source);
    std::multiset<std::string> known = textsOf(before);
    std::vector<bool> isKept(lines.size());
    bool isAnything = false;
    for (const Statement& statement : topStatements(source, lines.size())) {
        if (const auto old = known.find(statement.text); old != known.end()) {
            known.erase(old);
            continue;
        }
        if (!statement.mayRunAgain) continue;
        isAnything = true;
        for (std::size_t i = statement.firstLine; i <= statement.lastLine && i < lines.size(); ++i)
            isKept[i] = true;
    }
    std::string kept;
    for (std::size_t i = 0; i < lines.size() && isAnything; ++i) kept += (isKept[i] ? lines[i] : "") + "\n";
    return kept;
}

}  // namespace kelmora
