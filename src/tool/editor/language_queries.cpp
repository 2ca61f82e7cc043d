#include "tool/editor/language_queries.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "script/token.h"
#include "workbench/formatter.h"
#include "workbench/token_spacing.h"

namespace kelmora {
namespace {

constexpr int requestFailed = -32803;

// Numbers of the protocol.
enum class ItemKind : std::uint8_t {
    Function = 3,
    Field = 5,
    Variable = 6,
    Module = 9,
    Keyword = 14,
    Label = 18
};
enum class SymbolKind : std::uint8_t { Namespace = 3, Function = 12, Variable = 13 };

bool isFunctionForm(const WordEntry& entry) {
    return !entry.forms.empty() && entry.forms[0].find('(') != std::string::npos;
}

ItemKind kindOf(const WordEntry& entry) {
    if (entry.kind == WordKind::Statement) return ItemKind::Keyword;
    return isFunctionForm(entry) ? ItemKind::Function : ItemKind::Variable;
}

// Whether a token's text stands so many tokens in front of another.
bool isBefore(const SourceSymbols& symbols, std::uint32_t token, std::uint32_t back, std::string_view text) {
    return token >= back && symbols.text(token - back) == text;
}

// The word in front of `["` when the token is a member's name; empty otherwise.
std::string_view tableOf(const SourceSymbols& symbols, std::uint32_t token) {
    if (!isBefore(symbols, token, 1, "[") || token < 2) return {};
    const std::string_view word = symbols.text(token - 2);
    return isVariableName(word) ? word : std::string_view();
}

class CompletionList {
public:
    CompletionList(const QueryPlace& place, std::size_t begin)
        : range_(rangeJson(TextPositions(place.symbols.source()), begin, place.offset)),
          prefix_(place.symbols.source().substr(begin, place.offset - begin)) {}

    const std::string& prefix() const { return prefix_; }

    void add(const std::string& label, ItemKind kind, const std::string& detail = {}, std::string data = {}) {
        const auto same = [](char a, char b) {
            return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
        };
        if (label.size() < prefix_.size() ||
            !std::equal(prefix_.begin(), prefix_.end(), label.begin(), same) || !seen_.insert(label).second)
            return;
        Json item{{"label", label}, {"kind", static_cast<int>(kind)}};
        // With nothing typed yet, nothing is replaced.
        if (!prefix_.empty()) item["textEdit"] = {{"range", range_}, {"newText", label}};
        if (!detail.empty()) item["detail"] = detail;
        if (!data.empty()) item["data"] = std::move(data);
        items_.push_back(std::move(item));
    }
    void add(const WordEntry& entry) {
        add(entry.word, kindOf(entry), entry.forms[0], entry.table + "." + entry.word);
    }
    Json list() && { return {{"isIncomplete", false}, {"items", std::move(items_)}}; }

private:
    Json range_;
    std::string prefix_;
    std::set<std::string> seen_;
    Json items_ = Json::array();
};

void addMembers(CompletionList& list, const QueryPlace& place, const WordBook& words,
                std::string_view table) {
    for (const WordEntry& entry : words.entries())
        if (entry.table == table) list.add(entry);
    for (const std::string& member : place.project.symbols().membersOf(table))
        list.add(member, ItemKind::Field);
}

void addNames(CompletionList& list, const QueryPlace& place) {
    for (const NameInSight& name :
         place.project.symbols().namesInSight(place.path, place.offset, list.prefix()))
        list.add(name.name, name.isFunction ? ItemKind::Function : ItemKind::Variable,
                 name.isBound ? "of this function" : "");
}

Json completionInString(const QueryPlace& place, const WordBook& words, std::uint32_t token) {
    const SourceSymbols& symbols = place.symbols;
    CompletionList list(place, symbols.tokens()[token].begin + 1);
    if (const std::string_view table = tableOf(symbols, token); !table.empty()) {
        addMembers(list, place, words, table);
    } else if (isBefore(symbols, token, 2, "jumpTo")) {
        for (const std::string& label : place.project.symbols().labels()) list.add(label, ItemKind::Label);
    } else if (isBefore(symbols, token, 5, "Vesper") &&
               (isBefore(symbols, token, 3, "\"getVar\"") || isBefore(symbols, token, 3, "\"setVar\""))) {
        addNames(list, place);
    }
    return std::move(list).list();
}

const FunctionSymbol* functionNamed(const SourceSymbols& symbols, std::uint32_t begin) {
    for (const FunctionSymbol& each : symbols.functions())
        if (symbols.tokens()[each.name].begin == begin) return &each;
    return nullptr;
}

std::string kindText(const QueryPlace& place, const NameOccurrence& occurrence) {
    if (occurrence.binding == noIndex) return "variable";
    switch (place.symbols.bindings()[occurrence.binding].kind) {
        case NameUse::Parameter:
            return "parameter";
        case NameUse::LoopVariable:
            return "loop variable";
        default:
            return "local";
    }
}

// Of a name of the author's: its function's head and the comment above it, or where it is set.
std::string toldOfName(const QueryPlace& place, const NameOccurrence& occurrence) {
    const auto made = place.project.symbols().definitions(place.path, place.offset);
    if (made.empty()) return {};
    const SourceSymbols& symbols = *place.project.symbols().find(made[0].path);
    const FunctionSymbol* function = functionNamed(symbols, made[0].begin);
    const std::uint32_t token = symbols.tokenAt(made[0].begin);
    const std::string line = std::to_string(symbols.tokens()[token].line + 1);
    const std::string file = made[0].path.substr(made[0].path.find_last_of("/\\") + 1);
    if (!function)
        return kindText(place, occurrence) + " `" + std::string(place.symbols.name(occurrence)) +
               "`, set in " + file + ":" + line;
    const std::string comment = symbols.commentAbove(function->first);
    return "```vesper\nfunction " + function->path + function->parameters + "\n```\n" + comment +
           (comment.empty() ? "" : "\n\n") + file + ":" + line;
}

Json symbolJson(const TextPositions& positions, const SourceSymbols& symbols, std::string name,
                SymbolKind kind, std::uint32_t first, std::uint32_t last, std::uint32_t named) {
    const auto& tokens = symbols.tokens();
    return {
        {"name", std::move(name)},
        {"kind", static_cast<int>(kind)},
        {"range", rangeJson(positions, tokens[first].begin, std::max(tokens[last].end, tokens[named].end))},
        {"selectionRange", rangeJson(positions, tokens[named].begin, tokens[named].end)},
        {"children", Json::array()}};
}

}  // namespace

Json rangeJson(const TextPositions& positions, std::size_t begin, std::size_t end) {
    const auto json = [&](std::size_t offset) {
        const TextPosition at = positions.at(offset);
        return Json{{"line", at.line}, {"character", at.column}};
    };
    return {{"start", json(begin)}, {"end", json(end)}};
}

Json completionAt(const QueryPlace& place, const WordBook& words) {
    const SourceSymbols& symbols = place.symbols;
    // What is in front of the cursor counts, not what touches it from behind.
    const std::uint32_t token = place.offset == 0 ? noIndex : symbols.tokenAt(place.offset - 1);
    std::size_t begin = place.offset;
    if (token != noIndex) {
        const SourceToken& typed = symbols.tokens()[token];
        if (typed.kind == SourceTokenKind::Comment && typed.end >= place.offset) return Json::array();
        const bool isOpen = !typed.isClosed || typed.end > place.offset;
        if (typed.kind == SourceTokenKind::String && isOpen) return completionInString(place, words, token);
        if (typed.kind == SourceTokenKind::Word && typed.end >= place.offset) begin = typed.begin;
    }
    CompletionList list(place, begin);
    if (!list.prefix().empty() && !isVariableName(list.prefix()) && !isKeyword(list.prefix()) &&
        !isTrueToken(list.prefix()) && !isFalseToken(list.prefix()))
        return Json::array();
    for (const WordEntry& entry : words.entries()) {
        if (entry.table.empty()) {
            list.add(entry);
        } else {
            list.add(entry.table, ItemKind::Module);
        }
    }
    addNames(list, place);
    return std::move(list).list();
}

Json completionDocumented(const Json& item, const WordBook& words) {
    Json made = item;
    const auto data = item.find("data");
    if (data == item.end()) return made;
    const auto name = data->get<std::string>();
    const std::size_t point = std::min(name.find('.'), name.size());
    const WordEntry* entry =
        words.find(name.substr(0, point), std::string_view(name).substr(std::min(point + 1, name.size())));
    if (entry) made["documentation"] = {{"kind", "markdown"}, {"value", markdown(*entry)}};
    return made;
}

Json hoverAt(const QueryPlace& place, const WordBook& words) {
    const SourceSymbols& symbols = place.symbols;
    const std::uint32_t token = symbols.tokenAt(place.offset);
    if (token == noIndex) return nullptr;
    const SourceToken& named = symbols.tokens()[token];
    std::string told;
    if (named.kind == SourceTokenKind::String) {
        if (const WordEntry* entry =
                words.find(tableOf(symbols, token), decodeStringToken(symbols.text(token))))
            if (!entry->table.empty()) told = markdown(*entry);
    } else if (named.kind == SourceTokenKind::Word) {
        const NameOccurrence* occurrence = symbols.occurrenceAt(token);
        if (occurrence) told = toldOfName(place, *occurrence);
        const WordEntry* entry = told.empty() ? words.find("", symbols.text(token)) : nullptr;
        if (entry) told = markdown(*entry);
    }
    if (told.empty()) return nullptr;
    return {{"contents", {{"kind", "markdown"}, {"value", told}}},
            {"range", rangeJson(TextPositions(symbols.source()), named.begin, named.end)}};
}

Json locationsJson(const QueryPlace& place, const std::vector<SourceSpan>& spans,
                   const ScriptAddresses& addresses) {
    Json found = Json::array();
    std::map<std::string, TextPositions> positions;
    for (const SourceSpan& span : spans) {
        const std::string& source = place.project.symbols().find(span.path)->source();
        const TextPositions& at = positions.try_emplace(span.path, source).first->second;
        found.push_back(
            {{"uri", addresses.uriOf(span.path)}, {"range", rangeJson(at, span.begin, span.end)}});
    }
    return found;
}

Json renameAt(const QueryPlace& place, const std::string& newName, const ScriptAddresses& addresses) {
    const RenamePlan plan = place.project.symbols().rename(place.path, place.offset, newName);
    if (!plan.refusal.empty()) throw RpcError(requestFailed, plan.refusal);
    Json changes = Json::object();
    for (const Json& location : locationsJson(place, plan.places, addresses))
        changes[location.at("uri").get<std::string>()].push_back(
            {{"range", location.at("range")}, {"newText", newName}});
    return {{"changes", std::move(changes)}};
}

Json outlineOf(const SourceSymbols& symbols) {
    const TextPositions positions(symbols.source());
    std::vector<Json> functions;
    Json top = Json::array();
    for (const FunctionSymbol& each : symbols.functions())
        functions.push_back(symbolJson(positions, symbols, each.path + each.parameters, SymbolKind::Function,
                                       each.first, each.last, each.name));
    const auto put = [&](Json symbol, std::uint32_t parent) {
        Json& list = parent == noIndex ? top : functions[parent]["children"];
        list.push_back(std::move(symbol));
    };
    for (const LabelSymbol& each : symbols.labels())
        put(symbolJson(positions, symbols, each.label, SymbolKind::Namespace, each.token, each.last,
                       each.token),
            each.parent);
    for (const auto& [name, uses] : symbols.freeNames()) {
        const auto first = std::find_if(uses.begin(), uses.end(), [&](std::uint32_t use) {
            const NameOccurrence& each = symbols.occurrences()[use];
            return each.use == NameUse::Write && each.function == noIndex;
        });
        if (first == uses.end()) continue;
        const std::uint32_t token = symbols.occurrences()[*first].token;
        put(symbolJson(positions, symbols, name, SymbolKind::Variable, token, token, token), noIndex);
    }
    // A function stands behind the one around it.
    for (std::size_t i = functions.size(); i-- > 0;)
        put(std::move(functions[i]), symbols.functions()[i].parent);
    return top;
}

Json formattingOf(const std::string& source) {
    const FormattedSource made = formatSource(source);
    if (made.fault)
        throw RpcError(requestFailed,
                       "line " + std::to_string(made.fault->line + 1) + ": " + made.fault->message);
    Json edits = Json::array();
    std::string_view old = source;
    std::string_view fresh = made.text;
    for (std::uint32_t line = 0; !old.empty() || !fresh.empty(); ++line) {
        const std::string_view before = old.substr(0, std::min(old.find('\n'), old.size()));
        const std::string_view after = fresh.substr(0, std::min(fresh.find('\n'), fresh.size()));
        if (before != after) {
            const TextPosition end = TextPositions(before).at(before.size());
            edits.push_back({{"range",
                              {{"start", {{"line", line}, {"character", 0}}},
                               {"end", {{"line", line}, {"character", end.column}}}}},
                             {"newText", after}});
        }
        old.remove_prefix(std::min(before.size() + 1, old.size()));
        fresh.remove_prefix(std::min(after.size() + 1, fresh.size()));
    }
    return edits;
}

Json diagnosticsJson(const std::string& source, const std::vector<Diagnostic>& faults) {
    const TextPositions positions(source);
    Json found = Json::array();
    for (const Diagnostic& fault : faults) {
        const std::size_t begin = positions.lineStart(fault.line - 1) + fault.column - 1;
        found.push_back({{"range", rangeJson(positions, begin, begin + fault.length)},
                         {"severity", fault.severity == Severity::Error ? 1 : 2},
                         {"source", "vesper"},
                         {"message", fault.message + (fault.hint.empty() ? "" : "\n" + fault.hint)}});
    }
    return found;
}

}  // namespace kelmora
