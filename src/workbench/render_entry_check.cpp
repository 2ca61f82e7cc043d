#include "workbench/render_entry_check.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace kelmora {
namespace {

constexpr std::array<std::string_view, 11> types{
    "VESPER_IMAGE",      "VESPER_TEXT",       "VESPER_TEXT_SLIDE_LEFT", "VESPER_TEXT_SLIDE_RIGHT",
    "VESPER_CHARACTER1", "VESPER_CHARACTER2", "VESPER_CHARACTER3",      "VESPER_CHARACTER4",
    "VESPER_PARALLAX",   "VESPER_WEATHER",    "VESPER_RENDER_SKIP"};

// A table that is being read.
struct OpenTable {
    std::uint32_t type = 0;  // its token, 0 when there is none
    bool hasLayer = false;
};

// A value that can be told without running anything: a literal, or a name of the engine's.
bool isWrongType(const ParsedScriptLine& line, std::uint32_t token) {
    const TokenKind behind = line.analysis[token + 1].kind;
    if (behind != TokenKind::Comma && behind != TokenKind::CloseBrace) return false;
    switch (line.analysis[token].kind) {
        case TokenKind::Int:
            return line.analysis[token].literal.intValue() < 10 ||
                   line.analysis[token].literal.intValue() > 30;
        case TokenKind::String:
        case TokenKind::True:
        case TokenKind::False:
            return true;
        case TokenKind::Identifier:
            return line.tokens[token].starts_with("VESPER_") &&
                   std::find(types.begin(), types.end(), line.tokens[token]) == types.end();
        default:
            return false;
    }
}

// The key in front of a `=` or `:`, also a quoted one.
std::string_view keyBefore(const ParsedScriptLine& line, std::uint32_t sign) {
    const TokenAnalysis& token = line.analysis[sign - 1];
    if (token.kind == TokenKind::String) return token.literal.text();
    return token.isPlainIdentifier() ? std::string_view(line.tokens[sign - 1]) : std::string_view();
}

}  // namespace

std::optional<std::uint32_t> wrongEntryType(const ParsedScriptLine& line) {
    const bool namesQueue =
        std::find(line.tokens.begin(), line.tokens.end(), "renderQueue") != line.tokens.end();
    std::vector<OpenTable> open;
    for (std::uint32_t i = 0; i < line.tokens.size(); ++i) {
        const TokenKind kind = line.analysis[i].kind;
        if (kind == TokenKind::OpenBrace) open.emplace_back();
        if (!open.empty() && (kind == TokenKind::Assign || kind == TokenKind::Colon)) {
            const std::string_view key = keyBefore(line, i);
            if (key == "type") open.back().type = i + 1;
            if (key == "layer") open.back().hasLayer = true;
        }
        if (kind != TokenKind::CloseBrace || open.empty()) continue;
        const OpenTable table = open.back();
        open.pop_back();
        const bool isEntry = table.type != 0 && (table.hasLayer || namesQueue);
        if (isEntry && isWrongType(line, table.type)) return table.type;
    }
    return std::nullopt;
}

}  // namespace kelmora
