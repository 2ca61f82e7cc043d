#include "workbench/script_check.h"

#include <algorithm>
#include <stdexcept>

#include "script/form_check.h"
#include "script/interpreter.h"
#include "script/line_parser.h"
#include "script/parsed_header.h"
#include "script/table_object.h"
#include "script/token_groups.h"
#include "workbench/block_check.h"
#include "workbench/name_reads.h"
#include "workbench/nearest.h"
#include "workbench/render_entry_check.h"

namespace kelmora {
namespace {

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

std::size_t indentOf(const std::string& line) {
    return std::min(line.find_first_not_of(" \t"), line.size());
}

// Where a statement's token stands: its line from 0, its column from 0.
struct Place {
    std::size_t line = 0;
    std::size_t column = 0;
};

// Finds the token by walking over those in front of it, on the statement's lines.
Place placeOf(const std::vector<std::string>& lines, const ParsedScriptLine& statement, std::uint32_t token) {
    Place place{statement.lineNumber, 0};
    if (place.line >= lines.size()) return place;
    place.column = indentOf(lines[place.line]);
    std::size_t from = lines[place.line].find(statement.text.substr(0, statement.text.find('\n')));
    if (from == std::string::npos) from = 0;
    std::size_t line = place.line;
    for (std::uint32_t i = 0; i <= token && i < statement.tokens.size(); ++i) {
        std::size_t found = lines[line].find(statement.tokens[i], from);
        while (found == std::string::npos && line + 1 < lines.size() && line < statement.lineNumber + 200) {
            found = lines[++line].find(statement.tokens[i]);
        }
        if (found == std::string::npos) return place;
        place = {line, found};
        from = found + statement.tokens[i].size();
    }
    if (token >= statement.tokens.size() && !statement.tokens.empty())
        place.column += statement.tokens.back().size();
    return place;
}

Diagnostic diagnosticAt(const std::string& path, const std::vector<std::string>& lines,
                        const ParsedScriptLine& statement, std::uint32_t token, std::string message,
                        Severity severity) {
    const Place place = placeOf(lines, statement, token);
    Diagnostic made;
    made.path = path;
    made.line = static_cast<std::uint32_t>(place.line) + 1;
    made.column = static_cast<std::uint32_t>(place.column) + 1;
    made.severity = severity;
    made.message = std::move(message);
    if (place.line < lines.size()) {
        made.source = lines[place.line];
        if (!made.source.empty() && made.source.back() == '\r') made.source.pop_back();
        if (token < statement.tokens.size())
            made.length = static_cast<std::uint32_t>(std::max<std::size_t>(
                1, std::min(statement.tokens[token].size(),
                            made.source.size() - std::min(made.source.size(), place.column))));
    }
    return made;
}

const std::vector<std::string>& statementWords() {
    static const std::vector<std::string> words{"if",    "elseif", "else",  "end",      "while",  "repeat",
                                                "until", "for",    "nest",  "function", "return", "break",
                                                "local", "native", "decay", "external"};
    return words;
}

// What an author of another language may have meant.
std::string hintFor(const ParsedScriptLine& line, const FormFault& fault) {
    const std::string token = fault.token < line.tokens.size() ? line.tokens[fault.token] : "";
    if (token == "then" || token == "do") return "`" + token + "` is not needed here";
    if (token == "=" && line.kind != ParsedLineKind::Other) return "a comparison is written ==";
    if (token == "/" && line.text.find("//") != std::string::npos) return "a comment begins with @@";
    const std::size_t point = token.find('.');
    if (point != std::string::npos && analyseToken(token.substr(0, point)).isPlainIdentifier())
        return token + " is written " + token.substr(0, point) + "[\"" + token.substr(point + 1) + "\"]";
    if (line.kind == ParsedLineKind::Other && line.tokens.size() > 1 && line.analysis[0].isIdentifier() &&
        line.analysis[1].isIdentifier()) {
        const std::string meant = nearestWord(line.tokens[0], statementWords());
        if (!meant.empty()) return "did you mean `" + meant + "`?";
    }
    return {};
}

void suggest(Diagnostic& fault, const std::string& word, const std::set<std::string>& known) {
    const std::string near = nearestWord(word, std::vector<std::string>(known.begin(), known.end()));
    if (!near.empty()) fault.hint = "did you mean `" + near + "`?";
}

std::vector<bool> variadicLines(const std::vector<ParsedScriptLine>& lines) {
    std::vector<bool> result(lines.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!lines[i].functionHeader) continue;
        const std::size_t end = lines[i].endIndex == noLine ? lines.size() : lines[i].endIndex;
        std::fill(result.begin() + static_cast<std::ptrdiff_t>(i + 1),
                  result.begin() + static_cast<std::ptrdiff_t>(std::max(end, i + 1)),
                  lines[i].functionHeader->isVariadic);
    }
    return result;
}

std::string joinLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + '\n';
    return text;
}

// The innermost bracket that the statement leaves open; the number of tokens when all are closed.
std::uint32_t openBracket(const ParsedScriptLine& line) {
    std::vector<std::uint32_t> open;
    for (std::uint32_t i = 0; i < line.tokens.size(); ++i) {
        const int step = bracketStep(line.analysis[i].kind);
        if (step > 0) open.push_back(i);
        if (step < 0 && !open.empty()) open.pop_back();
    }
    return open.empty() ? static_cast<std::uint32_t>(line.tokens.size()) : open.back();
}

// Empties a statement's first line, and those behind it that are indented deeper or only close brackets.
void clearStatement(std::vector<std::string>& lines, std::size_t first) {
    const std::size_t indent = indentOf(lines[first]);
    lines[first].clear();
    for (std::size_t i = first + 1; i < lines.size(); ++i) {
        const bool closes = lines[i].find_first_not_of(" \t)]}\r") == std::string::npos;
        if (indentOf(lines[i]) <= indent && !closes) return;
        lines[i].clear();
    }
}

// The line that a report of ours names; 1 where it names none.
std::uint32_t lineOfReport(const std::string& report) {
    const std::size_t at = report.find("\n  at ");
    if (at == std::string::npos) return 1;
    const std::size_t end = report.find_first_of(",\n", at + 6);
    const std::size_t digits = report.find_last_not_of("0123456789", end - 1) + 1;
    return digits < end ? static_cast<std::uint32_t>(std::stoul(report.substr(digits, end - digits))) : 1;
}

}  // namespace

ScriptCheck::ScriptCheck(VesperScript& engine) : engine_(engine) {
    host_.known.insert("arguments");  // of a script that the tool runs
    for (const auto& [name, value] : engine.globals()) {
        host_.known.insert(name);
        if (!value.isTable()) continue;
        hostTables_.insert(name);
        for (const Ref<StringObject>& key : value.table().sortedKeys()->keys)
            host_.members.emplace_back(name, key->text());
    }
}

void ScriptCheck::addKnown(const std::string& source) {
    take({}, source);
}

void ScriptCheck::addHostScript(const std::string& source) {
    Source& taken = take({}, source);
    for (const ParsedScriptLine& line : taken.statements)
        forEachNameRead(line, [&](std::uint32_t token) {
            taken.facts.known.insert(nameText(line.analysis[token].name));
        });
}

void ScriptCheck::add(const std::string& path, const std::string& source) {
    Source added;
    added.path = path;
    added.isChecked = true;
    take(std::move(added), source);
}

void ScriptCheck::replace(const std::string& path, const std::string& source, bool isChecked) {
    Source made;
    made.path = path;
    made.isChecked = isChecked;
    const auto found =
        std::find_if(sources_.begin(), sources_.end(), [&](const Source& each) { return each.path == path; });
    if (found == sources_.end()) {
        take(std::move(made), source);
    } else {
        *found = readSource(std::move(made), source);
    }
}

void ScriptCheck::remove(const std::string& path) {
    std::erase_if(sources_, [&](const Source& each) { return each.path == path; });
}

ScriptCheck::Source& ScriptCheck::take(Source source, const std::string& text) {
    sources_.push_back(readSource(std::move(source), text));
    return sources_.back();
}

ScriptCheck::Source ScriptCheck::readSource(Source source, const std::string& text) {
    source.physicalLines = splitLines(text);
    read(source);
    source.isVariadic = variadicLines(source.statements);
    collect(source);
    return source;
}

// A bracket that is not closed takes in all that follows: such a statement is left out, and the rest read
// again.
void ScriptCheck::read(Source& source) {
    Interpreter& script = engine_.interpreter();
    const SourceLineGuard guard(script.context);
    std::vector<std::string> lines = source.physicalLines;
    try {
        for (;;) {
            source.statements = parseLines(joinLines(lines), script.context);
            if (source.statements.empty()) return;
            const ParsedScriptLine& last = source.statements.back();
            const std::uint32_t opener = openBracket(last);
            if (opener == last.tokens.size()) return;
            const auto fault = checkForm(script, last, true);
            source.faults.push_back(diagnosticAt(source.path, source.physicalLines, last, opener,
                                                 fault ? fault->message : "Expected a closing bracket",
                                                 Severity::Error));
            clearStatement(lines, last.lineNumber);
        }
    } catch (const std::runtime_error& error) {
        const std::string report = error.what();
        Diagnostic fault;
        fault.path = source.path;
        fault.line = lineOfReport(report);
        fault.message = reportMessage(report);
        if (fault.line <= source.physicalLines.size()) fault.source = source.physicalLines[fault.line - 1];
        source.faults.push_back(std::move(fault));
        source.statements.clear();
    }
}

void ScriptCheck::collect(Source& source) {
    for (const ParsedScriptLine& line : source.statements) collectLine(line, source.facts);
}

void ScriptCheck::collectLine(const ParsedScriptLine& line, Facts& facts) {
    if (line.hasNestLabel) facts.labels.insert(line.nestLabel);
    forEachNameSet(line, [&](NameId name) { facts.known.insert(nameText(name)); });
    forEachNameReplaced(line, [&](NameId name) { facts.redefined.insert(nameText(name)); });
    forEachMemberSet(line, [&](NameId name, const std::string& member) {
        facts.members.emplace_back(nameText(name), member);
    });
    collectHandledNames(line, facts.handled);
    for (const TokenAnalysis& token : line.analysis)
        if (token.kind == TokenKind::String) facts.texts.insert(token.literal.text());
}

void ScriptCheck::gather() {
    known_.clear();
    redefined_.clear();
    texts_.clear();
    labels_.clear();
    handled_.clear();
    members_.clear();
    for (const std::string& table : hostTables_) members_[table];
    const auto give = [this](const Facts& facts) {
        known_.insert(facts.known.begin(), facts.known.end());
        redefined_.insert(facts.redefined.begin(), facts.redefined.end());
        texts_.insert(facts.texts.begin(), facts.texts.end());
        labels_.insert(facts.labels.begin(), facts.labels.end());
        handled_.insert(facts.handled.begin(), facts.handled.end());
        for (const auto& [name, member] : facts.members)
            if (const auto table = members_.find(name); table != members_.end()) table->second.insert(member);
    };
    give(host_);
    for (const Source& source : sources_) give(source.facts);
}

std::vector<Diagnostic> ScriptCheck::run() {
    gather();
    std::vector<Diagnostic> found;
    for (const Source& source : sources_) {
        if (!source.isChecked) continue;
        const auto first = static_cast<std::ptrdiff_t>(found.size());
        found.insert(found.end(), source.faults.begin(), source.faults.end());
        check(source, found);
        std::stable_sort(found.begin() + first, found.end(),
                         [](const Diagnostic& a, const Diagnostic& b) { return a.line < b.line; });
    }
    return found;
}

void ScriptCheck::check(const Source& source, std::vector<Diagnostic>& found) {
    std::vector<std::uint32_t> indents;
    for (const ParsedScriptLine& line : source.statements) {
        const std::string& text =
            source.physicalLines[std::min<std::size_t>(line.lineNumber, source.physicalLines.size() - 1)];
        indents.push_back(static_cast<std::uint32_t>(indentOf(text)));
    }
    for (BlockFault& fault : checkBlocks(source.statements, indents))
        found.push_back(diagnosticAt(source.path, source.physicalLines, source.statements[fault.line], 0,
                                     std::move(fault.message),
                                     fault.isError ? Severity::Error : Severity::Warning));
    std::set<std::string> reportedNames;
    for (std::size_t i = 0; i < source.statements.size(); ++i) {
        const ParsedScriptLine& line = source.statements[i];
        if (const auto fault = checkForm(engine_.interpreter(), line, source.isVariadic[i])) {
            found.push_back(diagnosticAt(source.path, source.physicalLines, line, fault->token,
                                         fault->message, Severity::Error));
            found.back().hint = hintFor(line, *fault);
            continue;
        }
        checkNames(source, line, reportedNames, found);
        checkMembers(source, line, found);
        checkLabels(source, line, found);
        checkEntries(source, line, found);
        checkFiles(source, line, found);
    }
}

// What stands in a string may be run or set by way of it.
bool ScriptCheck::standsInText(const std::string& word) const {
    return std::any_of(texts_.begin(), texts_.end(),
                       [&](const std::string& text) { return text.find(word) != std::string::npos; });
}

void ScriptCheck::checkNames(const Source& source, const ParsedScriptLine& line,
                             std::set<std::string>& reported, std::vector<Diagnostic>& found) {
    forEachNameRead(line, [&](std::uint32_t token) {
        const std::string& name = nameText(line.analysis[token].name);
        if (known_.contains(name) || !reported.insert(name).second || standsInText(name)) return;
        found.push_back(diagnosticAt(source.path, source.physicalLines, line, token, name + " is never set",
                                     Severity::Warning));
        suggest(found.back(), name, known_);
    });
}

void ScriptCheck::checkMembers(const Source& source, const ParsedScriptLine& line,
                               std::vector<Diagnostic>& found) {
    for (std::uint32_t i = 0; i + 3 < line.tokens.size(); ++i) {
        if (!line.analysis[i].isPlainIdentifier() || line.analysis[i + 1].kind != TokenKind::OpenBracket ||
            line.analysis[i + 2].kind != TokenKind::String ||
            line.analysis[i + 3].kind != TokenKind::CloseBracket)
            continue;
        const auto table = members_.find(line.tokens[i]);
        const std::string member = line.analysis[i + 2].literal.text();
        if (table == members_.end() || table->second.contains(member) || redefined_.contains(line.tokens[i]))
            continue;
        found.push_back(diagnosticAt(source.path, source.physicalLines, line, i + 2,
                                     line.tokens[i] + " has no member " + line.tokens[i + 2],
                                     Severity::Warning));
        suggest(found.back(), member, table->second);
    }
}

void ScriptCheck::checkLabels(const Source& source, const ParsedScriptLine& line,
                              std::vector<Diagnostic>& found) {
    for (std::uint32_t i = 0; i + 3 < line.tokens.size(); ++i) {
        if (line.tokens[i] != "jumpTo" || line.analysis[i + 1].kind != TokenKind::OpenParenthesis ||
            line.analysis[i + 2].kind != TokenKind::String ||
            line.analysis[i + 3].kind != TokenKind::CloseParenthesis)
            continue;
        const std::string label = line.analysis[i + 2].literal.text();
        if (labels_.contains(label) || standsInText("nest '" + label) || standsInText("nest \"" + label))
            continue;
        found.push_back(diagnosticAt(source.path, source.physicalLines, line, i + 2,
                                     "no nest block has the label " + line.tokens[i + 2], Severity::Warning));
        suggest(found.back(), label, labels_);
    }
}

void ScriptCheck::checkEntries(const Source& source, const ParsedScriptLine& line,
                               std::vector<Diagnostic>& found) {
    if (const auto token = wrongEntryType(line))
        found.push_back(diagnosticAt(source.path, source.physicalLines, line, *token,
                                     line.tokens[*token] + " is no type of the render queue",
                                     Severity::Warning));
}

void ScriptCheck::checkFiles(const Source& source, const ParsedScriptLine& line,
                             std::vector<Diagnostic>& found) const {
    const auto assets = assets_.find(source.path);
    if (assets == assets_.end()) return;
    for (AssetFault& fault : checkAssets(line, *assets->second, handled_)) {
        found.push_back(diagnosticAt(source.path, source.physicalLines, line, fault.token,
                                     std::move(fault.message), Severity::Warning));
        found.back().hint = std::move(fault.hint);
    }
}

}  // namespace kelmora
