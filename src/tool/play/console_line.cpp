#include "tool/play/console_line.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>

#include "script/callable.h"
#include "script/line_parser.h"
#include "script/source_context.h"
#include "script/table_object.h"
#include "tool/play/game_session.h"
#include "tool/play/protected_call.h"

namespace kelmora {
namespace {

constexpr std::size_t mostEntries = 8;
constexpr std::size_t longestText = 120;
constexpr int deepest = 2;

std::string describedTo(const Variable& value, int depth);

std::string describedTable(const TableObject& table, int depth) {
    std::string text;
    std::size_t count = 0;
    for (const auto& key : table.sortedKeys()->keys) {
        if (count++ == mostEntries) {
            text += ", ...";
            break;
        }
        const Variable* held = table.find(key->text());
        text += (text.empty() ? "" : ", ") + key->text() + " = " + (held ? describedTo(*held, depth) : "not");
    }
    return "{" + text + "}";
}

std::string describedList(const std::vector<Variable>& items, int depth) {
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i == mostEntries) return "[" + text + ", ... (" + std::to_string(items.size()) + ")]";
        text += (i == 0 ? "" : ", ") + describedTo(items[i], depth);
    }
    return "[" + text + "]";
}

std::string describedTo(const Variable& value, int depth) {
    if (value.isString()) {
        const std::string& text = value.text();
        return text.size() <= longestText ? "\"" + text + "\"" : "\"" + text.substr(0, longestText) + "\"...";
    }
    if (value.isTable()) return depth == 0 ? "{...}" : describedTable(value.table(), depth - 1);
    if (value.isArray()) return depth == 0 ? "[...]" : describedList(value.items(), depth - 1);
    if (value.isMulti()) return describedList(value.values(), depth);
    if (value.isFunction()) return "function " + value.function().name;
    if (value.isPointer() || value.isRaw()) return std::string(typeName(value.type()));
    return value.toString();
}

bool isExpression(const std::string& line) {
    SourceContext context;
    const std::vector<ParsedScriptLine> lines = parseLines(line, context);
    return lines.size() == 1 && lines[0].kind == ParsedLineKind::Other && !lines[0].assignment;
}

std::string describedAll(const std::vector<Variable>& values) {
    std::string text;
    for (const Variable& value : values) text += (text.empty() ? "" : ", ") + described(value);
    return text;
}

std::string runVesper(VesperScript& engine, const std::string& line) {
    const bool givesValue = isExpression(line);
    const std::string source = givesValue ? "return " + line : line;
    const Variable run = VesperScript::createNativeCallable(
        [&engine, source](const std::vector<Variable>&) { return engine.runScript(source); }, "console");
    const std::vector<Variable> values = protectedCall(engine, run, {});
    return givesValue ? describedAll(values) : "";
}

const Variable& memberOf(const Variable& module, const char* name) {
    const Variable* found = module.isTable() ? module.table().find(name) : nullptr;
    if (!found) throw std::runtime_error("this language is not there");
    return *found;
}

// An expression where the line is one, else a statement.
std::string runGuest(VesperScript& engine, const char* moduleName, const std::string& line) {
    const Variable module = globalOf(engine, moduleName);
    const Variable name = Variable::text("console");
    std::string source = "return " + line;
    try {
        protectedCall(engine, memberOf(module, "compileBytecode"), {Variable::text(source), name});
    } catch (const std::runtime_error&) {
        source = line;
    }
    return describedAll(protectedCall(engine, memberOf(module, "runScript"), {Variable::text(source), name}));
}

bool isWordPart(char letter) {
    return std::isalnum(static_cast<unsigned char>(letter)) != 0 || letter == '_';
}

std::size_t wordStart(const std::string& line, std::size_t end) {
    while (end > 0 && isWordPart(line[end - 1])) --end;
    return end;
}

}  // namespace

const char* nameOf(ConsoleLanguage language) {
    constexpr const char* names[] = {"vesper", "lua", "rwby"};
    return names[static_cast<int>(language)];
}

std::string described(const Variable& value) {
    return describedTo(value, deepest);
}

std::string runLine(VesperScript& engine, ConsoleLanguage language, const std::string& line) {
    switch (language) {
        case ConsoleLanguage::vesper:
            return runVesper(engine, line);
        case ConsoleLanguage::lua:
            return runGuest(engine, "Lua", line);
        case ConsoleLanguage::rwby:
            return runGuest(engine, "Ruby", line);
    }
    return "";
}

Variable namedValue(const VesperScript& engine, const std::string& name) {
    Variable global = globalOf(engine, name);
    if (!global.isNot()) return global;
    const Variable remembered = globalOf(engine, "novelVars");
    const Variable* found = remembered.isTable() ? remembered.table().find(name) : nullptr;
    return found ? *found : global;
}

Completion completionsOf(const VesperScript& engine, const std::string& line, std::size_t caret) {
    Completion completion;
    completion.start = wordStart(line, caret);
    const std::string begin = line.substr(completion.start, caret - completion.start);
    const auto offer = [&](const std::string& word) {
        if (word.starts_with(begin)) completion.words.push_back(word);
    };
    const bool isKey = completion.start >= 2 && line.compare(completion.start - 2, 2, "[\"") == 0;
    if (isKey) {
        const std::size_t nameEnd = completion.start - 2;
        const std::size_t nameStart = wordStart(line, nameEnd);
        const Variable table = globalOf(engine, line.substr(nameStart, nameEnd - nameStart));
        if (table.isTable())
            for (const auto& key : table.table().sortedKeys()->keys) offer(key->text());
    } else if (!begin.empty()) {
        for (const auto& [name, value] : engine.globals()) offer(name);
    }
    std::sort(completion.words.begin(), completion.words.end());
    if (completion.words.empty()) return completion;
    const std::string& first = completion.words.front();
    const std::string& last = completion.words.back();
    const auto [end, other] = std::mismatch(first.begin(), first.end(), last.begin(), last.end());
    completion.shared.assign(first.begin(), end);
    return completion;
}

}  // namespace kelmora
