#include "workbench/symbols.h"

#include <algorithm>

#include "script/token.h"
#include "workbench/symbol_reader.h"
#include "workbench/token_spacing.h"

namespace kelmora {
namespace {

std::string_view withoutScope(std::string_view word) {
    std::string_view name;
    int scope = 0;
    return parseScopedVariableToken(word, name, scope) ? name : word;
}

}  // namespace

bool isVariableName(std::string_view word) {
    const auto isLetter = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$';
    };
    if (word.empty() || !isLetter(word.front()) || isKeyword(word) || isTrueToken(word) || isFalseToken(word))
        return false;
    std::uintptr_t address = 0;
    if (parsePointerLiteral(word, address)) return false;
    return std::all_of(word.begin(), word.end(),
                       [&](char c) { return isLetter(c) || (c >= '0' && c <= '9'); });
}

SourceSymbols::SourceSymbols(std::string source) : source_(std::move(source)), tokens_(scanSource(source_)) {
    SymbolReader(*this).run();
    std::sort(occurrences_.begin(), occurrences_.end(),
              [](const NameOccurrence& a, const NameOccurrence& b) { return a.token < b.token; });
    for (std::uint32_t i = 0; i < occurrences_.size(); ++i)
        if (occurrences_[i].binding == noIndex) free_[std::string(name(occurrences_[i]))].push_back(i);
}

std::string_view SourceSymbols::name(const NameOccurrence& occurrence) const {
    return withoutScope(text(occurrence.token));
}

std::uint32_t SourceSymbols::tokenAt(std::size_t offset) const {
    const auto behind =
        std::upper_bound(tokens_.begin(), tokens_.end(), offset,
                         [](std::size_t at, const SourceToken& token) { return at < token.begin; });
    for (auto token = behind; token != tokens_.begin() && behind - token < 2;) {
        --token;
        const bool covers = offset < token->end;
        const bool touches = offset == token->end && token->kind == SourceTokenKind::Word;
        if (covers || touches) {
            // At the seam of a word and a sign the word is meant.
            if (token->kind == SourceTokenKind::Sign && token != tokens_.begin() && token->begin == offset &&
                (token - 1)->end == offset && (token - 1)->kind == SourceTokenKind::Word)
                --token;
            return static_cast<std::uint32_t>(token - tokens_.begin());
        }
    }
    return noIndex;
}

const NameOccurrence* SourceSymbols::occurrenceAt(std::uint32_t token) const {
    const auto found = std::lower_bound(
        occurrences_.begin(), occurrences_.end(), token,
        [](const NameOccurrence& each, std::uint32_t wanted) { return each.token < wanted; });
    return found != occurrences_.end() && found->token == token ? &*found : nullptr;
}

std::vector<std::string> SourceSymbols::boundNamesAt(std::size_t offset) const {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < bindings_.size(); ++i) {
        const bool isOpen = extents_[i].last >= tokens_.size();
        const bool isSeen =
            tokens_[extents_[i].first].begin <= offset && (isOpen || offset <= tokens_[extents_[i].last].end);
        if (isSeen) names.emplace_back(withoutScope(text(bindings_[i].token)));
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::string SourceSymbols::commentAbove(std::uint32_t token) const {
    std::string told;
    std::uint32_t line = tokens_[token].line;
    for (std::uint32_t i = token; i > 0;) {
        --i;
        const SourceToken& before = tokens_[i];
        if (before.line == tokens_[token].line) continue;
        const bool alone = i == 0 || tokens_[i - 1].line != before.line;
        if (before.kind != SourceTokenKind::Comment || before.line + 1 != line || !alone) break;
        line = before.line;
        std::string_view words = text(i).substr(2);
        if (words.starts_with(' ')) words.remove_prefix(1);
        told = std::string(words) + (told.empty() ? "" : "\n") + told;
    }
    return told;
}

}  // namespace kelmora
