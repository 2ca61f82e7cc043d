#include "workbench/symbol_reader.h"

#include <algorithm>

#include "script/token.h"
#include "workbench/token_spacing.h"

namespace kelmora {
namespace {

bool isAssignment(std::string_view sign) {
    static constexpr std::string_view signs[] = {"=", "+=", "-=", "*=", "/=", "\\=", "%=", "^="};
    return std::find(std::begin(signs), std::end(signs), sign) != std::end(signs);
}

}  // namespace

void SymbolReader::run() {
    blocks_.emplace_back().isBody = true;
    for (std::uint32_t i = 0; i < symbols_.tokens_.size(); ++i) {
        const SourceToken& token = symbols_.tokens_[i];
        if (token.kind == SourceTokenKind::Comment) continue;
        if (token.startsStatement && !code_.empty()) statement();
        const bool separates = token.openBrackets == 0 && textOf(symbols_.source_, token) == ";";
        if (!separates) code_.push_back(i);
    }
    lastStatement();
    while (!blocks_.empty()) {
        endBindings(blocks_.back());
        blocks_.pop_back();
    }
}

// One with a bracket open, as while it is typed, has taken in all lines behind it.
void SymbolReader::lastStatement() {
    if (code_.empty()) return;
    int open = 0;
    for (std::uint32_t i = 0; i < code_.size(); ++i) open += isSign(i, "([{") - isSign(i, ")]}");
    if (open <= 0) {
        statement();
        return;
    }
    const std::vector<std::uint32_t> all = std::move(code_);
    code_.clear();
    for (const std::uint32_t token : all) {
        if (!code_.empty() && symbols_.tokens_[token].line != symbols_.tokens_[code_.back()].line)
            statement();
        code_.push_back(token);
    }
    statement();
}

bool SymbolReader::isWord(std::uint32_t at) const {
    return at < code_.size() && symbols_.tokens_[code_[at]].kind == SourceTokenKind::Word;
}
bool SymbolReader::isSign(std::uint32_t at, std::string_view signs) const {
    return at < code_.size() && symbols_.tokens_[code_[at]].kind == SourceTokenKind::Sign &&
           text(at).size() == 1 && signs.find(text(at)) != std::string_view::npos;
}

// Behind the bracket that closes the group opened at `at`.
std::uint32_t SymbolReader::groupEnd(std::uint32_t at) const {
    std::uint32_t depth = 0;
    for (; at < code_.size(); ++at) {
        if (isSign(at, "([{")) ++depth;
        if (isSign(at, ")]}") && --depth == 0) return at + 1;
    }
    return at;
}

void SymbolReader::statement() {
    const std::string_view first = isWord(0) ? text(0) : std::string_view();
    const bool isQualified = first == "local" || first == "native" || first == "decay";
    if (first == "function" || (isQualified && isWord(1) && text(1) == "function")) {
        functionHeader(first == "function" ? 1 : 2, first == "local");
    } else if (first == "if" || first == "while") {
        reads(1, static_cast<std::uint32_t>(code_.size()));
        openBlock(false);
    } else if (first == "elseif" || first == "else") {
        clearBlock();
        reads(1, static_cast<std::uint32_t>(code_.size()));
    } else if (first == "repeat") {
        openBlock(false);
    } else if (first == "until" || first == "end") {
        reads(1, static_cast<std::uint32_t>(code_.size()));
        closeBlock();
    } else if (first == "for") {
        forHeader();
    } else if (first == "nest") {
        nest();
    } else if (first == "local") {
        declaration();
    } else {
        plain(first == "native" || first == "external" || first == "return" ? 1 : 0);
    }
    code_.clear();
}

void SymbolReader::functionHeader(std::uint32_t at, bool isLocal) {
    FunctionSymbol made;
    made.first = code_[0];
    made.parent = currentFunction();
    if (!isWord(at)) {
        openBlock(true);
        return;
    }
    made.name = code_[at];
    std::uint32_t open = at + 1;
    while (isSign(open, "[")) open = groupEnd(open);
    const bool isMember = open > at + 1;
    if (isLocal && !isMember) {
        bind(at, NameUse::Local);
    } else {
        note(at, isMember ? NameUse::Read : NameUse::Function);
    }
    if (isMember) {
        reads(at + 1, open);
        noteMember(at);
    }
    const auto slice = [&](std::uint32_t from, std::uint32_t to) {
        if (from >= to) return std::string();
        const std::uint32_t begin = symbols_.tokens_[code_[from]].begin;
        return symbols_.source_.substr(begin, symbols_.tokens_[code_[to - 1]].end - begin);
    };
    made.path = slice(at, open);
    made.parameters = isSign(open, "(") ? slice(open, groupEnd(open)) : "()";
    made.last = static_cast<std::uint32_t>(symbols_.tokens_.size()) - 1;
    symbols_.functions_.push_back(std::move(made));
    openBlock(true);
    blocks_.back().function = static_cast<std::uint32_t>(symbols_.functions_.size()) - 1;
    parameters(open);
}

void SymbolReader::parameters(std::uint32_t open) {
    if (!isSign(open, "(")) return;
    for (std::uint32_t i = open + 1; i < groupEnd(open); ++i)
        if (isWord(i) && isVariableName(text(i))) bind(i, NameUse::Parameter);
}

void SymbolReader::forHeader() {
    std::uint32_t split = 1;
    const auto splits = [&](std::uint32_t at) { return isSign(at, "=") || (isWord(at) && text(at) == "in"); };
    while (split < code_.size() && !splits(split)) ++split;
    reads(split + 1, static_cast<std::uint32_t>(code_.size()));
    openBlock(false);
    for (std::uint32_t i = 1; i < split; ++i)
        if (isWord(i) && isVariableName(text(i))) bind(i, NameUse::LoopVariable);
}

void SymbolReader::nest() {
    const bool hasLabel = code_.size() > 1 && symbols_.tokens_[code_[1]].kind == SourceTokenKind::String;
    openBlock(false);
    if (!hasLabel) return;
    LabelSymbol made;
    made.label = decodeStringToken(text(1));
    made.token = code_[1];
    made.last = static_cast<std::uint32_t>(symbols_.tokens_.size()) - 1;
    made.parent = currentFunction();
    symbols_.labels_.push_back(std::move(made));
    blocks_.back().label = static_cast<std::uint32_t>(symbols_.labels_.size()) - 1;
}

// `local a, b = ...`: what stands on the right does not see the new names yet.
void SymbolReader::declaration() {
    std::uint32_t split = 1;
    while (split < code_.size() && !isAssignment(text(split)))
        split = isSign(split, "[({") ? groupEnd(split) : split + 1;
    reads(split + 1, static_cast<std::uint32_t>(code_.size()));
    for (std::uint32_t i = 1; i < split;) {
        if (isWord(i) && isSign(i + 1, "[")) {
            note(i, NameUse::Read);
        } else if (isWord(i) && isVariableName(text(i))) {
            const auto own = blocks_.back().bindings.find(text(i));
            if (own != blocks_.back().bindings.end() &&
                symbols_.bindings_[own->second].kind == NameUse::Local) {
                note(i, NameUse::Write);
            } else {
                bind(i, NameUse::Local);
            }
        }
        ++i;
        while (isSign(i, "[")) {
            reads(i, groupEnd(i));
            i = groupEnd(i);
        }
    }
}

// An assignment or an expression.
void SymbolReader::plain(std::uint32_t at) {
    std::uint32_t split = at;
    while (split < code_.size() && !isAssignment(text(split)))
        split = isSign(split, "[({") ? groupEnd(split) : split + 1;
    if (split >= code_.size()) {
        reads(at, split);
        return;
    }
    const bool isPlain = text(split) == "=";
    for (std::uint32_t i = at; i < split;) {
        const bool isName = isWord(i) && isVariableName(symbols_.name({code_[i]}));
        const bool isMember = isSign(i + 1, "[");
        if (isName) note(i, isMember || !isPlain ? NameUse::Read : NameUse::Write);
        if (isName && isMember) noteMember(i);
        ++i;
        if (isSign(i, "[({")) {
            reads(i, groupEnd(i));
            i = groupEnd(i);
        }
    }
    reads(split + 1, static_cast<std::uint32_t>(code_.size()));
}

// A word in front of `=` or `:` in a table is a key.
void SymbolReader::reads(std::uint32_t from, std::uint32_t to) {
    int braces = 0;
    for (std::uint32_t i = from; i < to && i < code_.size(); ++i) {
        if (isSign(i, "{")) ++braces;
        if (isSign(i, "}")) --braces;
        if (!isWord(i) || (braces > 0 && isSign(i + 1, "=:"))) continue;
        if (isVariableName(symbols_.name({code_[i]}))) note(i, NameUse::Read);
    }
}

void SymbolReader::openBlock(bool isBody) {
    blocks_.emplace_back().isBody = isBody;
}
void SymbolReader::closeBlock() {
    if (blocks_.size() < 2) return;
    Block& block = blocks_.back();
    endBindings(block);
    if (block.function != noIndex) symbols_.functions_[block.function].last = code_[0];
    if (block.label != noIndex) symbols_.labels_[block.label].last = code_[0];
    blocks_.pop_back();
}
// Another branch: what the last one declared is gone.
void SymbolReader::clearBlock() {
    if (blocks_.size() < 2) return;
    endBindings(blocks_.back());
    blocks_.back().bindings.clear();
}
void SymbolReader::endBindings(Block& block) {
    const std::uint32_t last = code_.empty() ? static_cast<std::uint32_t>(symbols_.tokens_.size()) : code_[0];
    for (const auto& [name, binding] : block.bindings) symbols_.extents_[binding].last = last;
}

void SymbolReader::bind(std::uint32_t at, NameUse kind) {
    const auto made = static_cast<std::uint32_t>(symbols_.bindings_.size());
    symbols_.bindings_.push_back({kind, code_[at], currentFunction()});
    symbols_.extents_.push_back({code_[at], static_cast<std::uint32_t>(symbols_.tokens_.size())});
    const auto [own, isNew] = blocks_.back().bindings.emplace(text(at), made);
    if (!isNew) {  // a local hides the parameter of its name
        symbols_.extents_[own->second].last = code_.back();
        own->second = made;
    }
    symbols_.occurrences_.push_back({code_[at], kind, made, currentFunction()});
}

void SymbolReader::note(std::uint32_t at, NameUse use) {
    const std::string_view word = text(at);
    std::string_view name = word;
    int scope = -1;
    parseScopedVariableToken(word, name, scope);
    const std::uint32_t binding = scope < 0 || scope == 3 ? look(name, scope == 3) : noIndex;
    symbols_.occurrences_.push_back({code_[at], use, binding, currentFunction()});
}

void SymbolReader::noteMember(std::uint32_t at) {
    if (at + 3 >= code_.size() || symbols_.tokens_[code_[at + 2]].kind != SourceTokenKind::String ||
        !isSign(at + 3, "]"))
        return;
    symbols_.members_.push_back({std::string(text(at)), decodeStringToken(text(at + 2)), code_[at + 2]});
}

// All locals of the function come first, then its parameters and loop variables, each from the inside out.
std::uint32_t SymbolReader::look(std::string_view name, bool localsOnly) const {
    std::uint32_t other = noIndex;
    for (auto block = blocks_.rbegin(); block != blocks_.rend(); ++block) {
        if (const auto found = block->bindings.find(name); found != block->bindings.end()) {
            if (symbols_.bindings_[found->second].kind == NameUse::Local) return found->second;
            if (other == noIndex) other = found->second;
        }
        if (block->isBody) break;
    }
    return localsOnly ? noIndex : other;
}

std::uint32_t SymbolReader::currentFunction() const {
    for (auto block = blocks_.rbegin(); block != blocks_.rend(); ++block)
        if (block->function != noIndex) return block->function;
    return noIndex;
}

}  // namespace kelmora
