#include "workbench/project_symbols.h"

#include <algorithm>
#include <cctype>

#include "script/token.h"

namespace kelmora {
namespace {

SourceSpan spanOf(const std::string& path, const SourceSymbols& source, const NameOccurrence& occurrence) {
    const std::uint32_t begin = source.tokens()[occurrence.token].begin;
    return {path, begin, begin + static_cast<std::uint32_t>(source.name(occurrence).size())};
}
SourceSpan spanOf(const std::string& path, const SourceToken& token) {
    return {path, token.begin, token.end};
}

bool isString(const SourceSymbols& source, std::uint32_t token) {
    return token < source.tokens().size() && source.tokens()[token].kind == SourceTokenKind::String;
}

// What stands in front of a token, read backwards: `words` is the nearest last.
bool standsBehind(const SourceSymbols& source, std::uint32_t token,
                  std::initializer_list<std::string_view> words) {
    if (token < words.size()) return false;
    std::uint32_t at = token - static_cast<std::uint32_t>(words.size());
    return std::all_of(words.begin(), words.end(),
                       [&](std::string_view word) { return source.text(at++) == word; });
}

// A string that names a variable: `Vesper["getVar"]("name")`.
bool namesVariable(const SourceSymbols& source, std::uint32_t token) {
    return standsBehind(source, token, {"Vesper", "[", "\"getVar\"", "]", "("}) ||
           standsBehind(source, token, {"Vesper", "[", "\"setVar\"", "]", "("});
}
// A string that is run.
bool isCode(const SourceSymbols& source, std::uint32_t token) {
    return standsBehind(source, token, {"load", "("}) ||
           standsBehind(source, token, {"[", "\"runScript\"", "]", "("});
}

bool hasName(std::string_view text, std::string_view name) {
    const auto isPart = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '$';
    };
    for (std::size_t at = text.find(name); at != std::string_view::npos; at = text.find(name, at + 1)) {
        const std::size_t end = at + name.size();
        if ((at == 0 || !isPart(text[at - 1])) && (end == text.size() || !isPart(text[end]))) return true;
    }
    return false;
}

bool beginsLike(std::string_view name, std::string_view prefix) {
    return name.size() >= prefix.size() &&
           std::equal(prefix.begin(), prefix.end(), name.begin(), [](char a, char b) {
               return std::tolower(static_cast<unsigned char>(a)) ==
                      std::tolower(static_cast<unsigned char>(b));
           });
}

bool makesFree(NameUse use) {
    return use == NameUse::Write || use == NameUse::Function;
}

}  // namespace

bool ProjectSymbols::Target::isLocal() const {
    return isBound() && source->bindings()[occurrence->binding].kind == NameUse::Local;
}

void ProjectSymbols::set(const std::string& path, std::string source) {
    sources_.insert_or_assign(path, SourceSymbols(std::move(source)));
}

const SourceSymbols* ProjectSymbols::find(const std::string& path) const {
    const auto found = sources_.find(path);
    return found == sources_.end() ? nullptr : &found->second;
}

std::optional<ProjectSymbols::Target> ProjectSymbols::targetAt(const std::string& path,
                                                               std::size_t offset) const {
    const SourceSymbols* source = find(path);
    if (!source) return std::nullopt;
    const std::uint32_t token = source->tokenAt(offset);
    const NameOccurrence* occurrence = token == noIndex ? nullptr : source->occurrenceAt(token);
    if (!occurrence) return std::nullopt;
    return Target{source, occurrence, std::string(source->name(*occurrence))};
}

bool ProjectSymbols::isUsedFreely(std::string_view name) const {
    return std::any_of(sources_.begin(), sources_.end(),
                       [&](const auto& each) { return each.second.freeNames().contains(name); });
}

std::vector<SourceSpan> ProjectSymbols::ofBinding(const std::string& path, const SourceSymbols& source,
                                                  std::uint32_t binding) const {
    std::vector<SourceSpan> found;
    for (const NameOccurrence& each : source.occurrences())
        if (each.binding == binding) found.push_back(spanOf(path, source, each));
    return found;
}

std::vector<SourceSpan> ProjectSymbols::freeOnes(std::string_view name) const {
    std::vector<SourceSpan> found;
    for (const auto& [path, source] : sources_)
        if (const auto uses = source.freeNames().find(name); uses != source.freeNames().end())
            for (const std::uint32_t use : uses->second)
                found.push_back(spanOf(path, source, source.occurrences()[use]));
    return found;
}

// Strings that name the variable come along.
std::vector<SourceSpan> ProjectSymbols::allButLocals(std::string_view name) const {
    std::vector<SourceSpan> found;
    for (const auto& [path, source] : sources_) {
        for (const NameOccurrence& each : source.occurrences()) {
            const bool isLocal =
                each.binding != noIndex && source.bindings()[each.binding].kind == NameUse::Local;
            if (!isLocal && source.name(each) == name) found.push_back(spanOf(path, source, each));
        }
        for (std::uint32_t i = 0; i < source.tokens().size(); ++i) {
            if (!isString(source, i) || source.text(i).size() != name.size() + 2 || !namesVariable(source, i))
                continue;
            const SourceToken& token = source.tokens()[i];
            if (source.text(i).substr(1, name.size()) == name)
                found.push_back({path, token.begin + 1, token.end - 1});
        }
    }
    return found;
}

std::vector<SourceSpan> ProjectSymbols::definitions(const std::string& path, std::size_t offset) const {
    const auto target = targetAt(path, offset);
    if (!target) return stringPlaces(path, offset, true);
    if (target->isBound()) {
        const NameBinding& binding = target->source->bindings()[target->occurrence->binding];
        return {spanOf(path, target->source->tokens()[binding.token])};
    }
    std::vector<SourceSpan> functions;
    std::vector<SourceSpan> top;
    std::vector<SourceSpan> written;
    for (const auto& [file, source] : sources_) {
        const auto uses = source.freeNames().find(target->name);
        if (uses == source.freeNames().end()) continue;
        for (const std::uint32_t use : uses->second) {
            const NameOccurrence& each = source.occurrences()[use];
            if (!makesFree(each.use)) continue;
            auto& list = each.use == NameUse::Function ? functions : each.function == noIndex ? top : written;
            list.push_back(spanOf(file, source, each));
        }
    }
    return !functions.empty() ? functions : !top.empty() ? top : written;
}

std::vector<SourceSpan> ProjectSymbols::references(const std::string& path, std::size_t offset) const {
    const auto target = targetAt(path, offset);
    if (!target) return stringPlaces(path, offset, false);
    return target->isBound() ? ofBinding(path, *target->source, target->occurrence->binding)
                             : freeOnes(target->name);
}

// Of a label or a member's name in a string.
std::vector<SourceSpan> ProjectSymbols::stringPlaces(const std::string& path, std::size_t offset,
                                                     bool onlyMade) const {
    const SourceSymbols* source = find(path);
    const std::uint32_t token = source ? source->tokenAt(offset) : noIndex;
    if (token == noIndex || !isString(*source, token)) return {};
    const std::string text = decodeStringToken(source->text(token));
    const bool isLabel =
        standsBehind(*source, token, {"jumpTo", "("}) || standsBehind(*source, token, {"nest"});
    const bool isMember = token >= 2 && standsBehind(*source, token, {"["}) &&
                          source->tokens()[token - 2].kind == SourceTokenKind::Word;
    if (!isLabel && !isMember) return {};
    const std::string table = isMember ? std::string(source->text(token - 2)) : "";
    std::vector<SourceSpan> found;
    for (const auto& [file, each] : sources_) {
        if (onlyMade && isLabel)
            for (const LabelSymbol& label : each.labels())
                if (label.label == text) found.push_back(spanOf(file, each.tokens()[label.token]));
        if (onlyMade && isMember)
            for (const MemberSymbol& member : each.members())
                if (member.table == table && member.member == text)
                    found.push_back(spanOf(file, each.tokens()[member.token]));
        for (std::uint32_t i = 0; !onlyMade && i < each.tokens().size(); ++i) {
            if (!isString(each, i) || decodeStringToken(each.text(i)) != text) continue;
            const bool fits = isLabel
                                  ? standsBehind(each, i, {"jumpTo", "("}) || standsBehind(each, i, {"nest"})
                                  : standsBehind(each, i, {table, "["});
            if (fits) found.push_back(spanOf(file, each.tokens()[i]));
        }
    }
    return found;
}

std::optional<SourceSpan> ProjectSymbols::renameable(const std::string& path, std::size_t offset) const {
    const auto target = targetAt(path, offset);
    if (!target || (!target->isBound() && hostNames_.contains(target->name))) return std::nullopt;
    return spanOf(path, *target->source, *target->occurrence);
}

RenamePlan ProjectSymbols::rename(const std::string& path, std::size_t offset,
                                  std::string_view newName) const {
    const auto target = targetAt(path, offset);
    if (!target) return {{}, "no name of a variable or a function stands here"};
    if (!isVariableName(newName)) return {{}, "`" + std::string(newName) + "` is no name for a variable"};
    if (newName == target->name) return {{}, "that is its name already"};
    const bool isAlone = target->isLocal() || (target->isBound() && !isUsedFreely(target->name));
    if (!isAlone && hostNames_.contains(target->name)) return {{}, "`" + target->name + "` is the engine's"};
    if (std::string refusal = conflict(*target, newName); !refusal.empty()) return {{}, std::move(refusal)};
    if (isAlone) return {ofBinding(path, *target->source, target->occurrence->binding), {}};
    return {allButLocals(target->name), {}};
}

std::optional<SourceSpan> ProjectSymbols::firstUse(std::string_view name) const {
    for (const auto& [path, source] : sources_)
        for (const NameOccurrence& each : source.occurrences())
            if (source.name(each) == name) return spanOf(path, source, each);
    return std::nullopt;
}

std::string ProjectSymbols::placeName(const SourceSpan& span) const {
    const std::string_view source = sources_.at(span.path).source();
    const auto line = std::count(source.begin(), source.begin() + span.begin, '\n') + 1;
    return span.path.substr(span.path.find_last_of("/\\") + 1) + ":" + std::to_string(line);
}

std::string ProjectSymbols::conflict(const Target& target, std::string_view newName) const {
    const std::string quoted = "`" + std::string(newName) + "`";
    if (target.isLocal()) {
        // Nothing outside of the function sees a local.
        const std::uint32_t function = target.source->bindings()[target.occurrence->binding].function;
        for (const NameOccurrence& each : target.source->occurrences())
            if (each.function == function && target.source->name(each) == newName)
                return quoted + " is used in the same function";
        return {};
    }
    if (hostNames_.contains(newName)) return quoted + " is the engine's";
    if (const auto use = firstUse(newName)) return quoted + " is used already, in " + placeName(*use);
    for (const auto& [path, source] : sources_)
        for (std::uint32_t i = 0; i < source.tokens().size(); ++i)
            if (isString(source, i) && isCode(source, i) && hasName(source.text(i), target.name))
                return "`" + target.name + "` is in a text that is run, in " +
                       placeName(spanOf(path, source.tokens()[i]));
    return {};
}

std::vector<NameInSight> ProjectSymbols::namesInSight(const std::string& path, std::size_t offset,
                                                      std::string_view prefix) const {
    std::map<std::string, NameInSight> found;
    const SourceSymbols* here = find(path);
    const std::uint32_t typed = here ? here->tokenAt(offset) : noIndex;
    for (const auto& [file, source] : sources_) {
        for (const auto& [name, uses] : source.freeNames()) {
            if (!beginsLike(name, prefix)) continue;
            // What is being typed names nothing yet.
            const bool isTyped =
                &source == here && uses.size() == 1 && source.occurrences()[uses[0]].token == typed;
            if (isTyped) continue;
            for (const std::uint32_t use : uses) {
                const NameUse kind = source.occurrences()[use].use;
                if (!makesFree(kind)) continue;
                NameInSight& made = found[name];
                made.name = name;
                made.isFunction = made.isFunction || kind == NameUse::Function;
            }
        }
    }
    if (here) {
        for (const std::string& name : here->boundNamesAt(offset))
            if (beginsLike(name, prefix)) found[name] = {name, false, true};
    }
    std::vector<NameInSight> names;
    for (auto& [name, made] : found) names.push_back(std::move(made));
    return names;
}

std::set<std::string> ProjectSymbols::membersOf(std::string_view table) const {
    std::set<std::string> found;
    for (const auto& [path, source] : sources_)
        for (const MemberSymbol& member : source.members())
            if (member.table == table) found.insert(member.member);
    return found;
}

std::set<std::string> ProjectSymbols::labels() const {
    std::set<std::string> found;
    for (const auto& [path, source] : sources_)
        for (const LabelSymbol& label : source.labels()) found.insert(label.label);
    return found;
}

}  // namespace kelmora
