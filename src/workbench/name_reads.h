#pragma once

#include "script/parsed_header.h"
#include "script/parsed_line.h"

// Which names a statement sets and reads.
namespace kelmora {

// Calls `visit(NameId)` for each. A compound assignment only changes what is there.
template <typename Visit>
void forEachNameSet(const ParsedScriptLine& line, Visit&& visit) {
    if (line.assignment && line.assignment->operation == TokenKind::Assign)
        for (const ParsedAssignmentTarget& target : line.assignment->targets)
            visit(line.analysis[target.tokenIndex].name);
    if (line.forHeader)
        for (const NameId name : line.forHeader->names) visit(name);
    if (line.functionHeader && line.functionHeader->fault.message.empty()) {
        visit(line.analysis[line.functionHeader->nameToken].name);
        for (const NameId name : line.functionHeader->parameters) visit(name);
    }
}

// Those of them that get a value of their own, not a member of what they hold.
template <typename Visit>
void forEachNameReplaced(const ParsedScriptLine& line, Visit&& visit) {
    const bool hasKeys = (line.functionHeader && !line.functionHeader->keys.empty()) ||
                         (line.assignment && !line.assignment->targets[0].keys.empty());
    if (!hasKeys || line.forHeader) forEachNameSet(line, visit);
}

// Calls `visit(NameId, member)` for each `name["member"]` that is set.
template <typename Visit>
void forEachMemberSet(const ParsedScriptLine& line, Visit&& visit) {
    const auto take = [&](std::uint32_t name, const std::vector<PreparedExpression>& keys) {
        if (keys.size() == 1 && line.analysis[keys[0].first].kind == TokenKind::String)
            visit(line.analysis[name].name, line.analysis[keys[0].first].literal.text());
    };
    if (line.assignment)
        for (const ParsedAssignmentTarget& target : line.assignment->targets)
            take(target.tokenIndex, target.keys);
    if (line.functionHeader && line.functionHeader->fault.message.empty())
        take(line.functionHeader->nameToken, line.functionHeader->keys);
}

// Calls `visit(token)` for each name that is read between two tokens. The word in front of a colon is a
// table's key.
template <typename Visit>
void forEachNameRead(const ParsedScriptLine& line, const PreparedExpression& range, Visit&& visit) {
    int braces = 0;
    for (std::uint32_t i = range.first; i < range.last && i < line.tokens.size(); ++i) {
        const TokenAnalysis& token = line.analysis[i];
        if (token.kind == TokenKind::OpenBrace) ++braces;
        if (token.kind == TokenKind::CloseBrace) --braces;
        if (token.kind != TokenKind::Identifier && token.kind != TokenKind::Scoped) continue;
        const TokenKind next = i + 1 < line.tokens.size() ? line.analysis[i + 1].kind : TokenKind::Unknown;
        if (braces > 0 && (next == TokenKind::Colon || next == TokenKind::Assign)) continue;
        visit(i);
    }
}

template <typename Visit>
void forEachNameRead(const ParsedScriptLine& line, Visit&& visit) {
    const auto readAll = [&](const std::vector<PreparedExpression>& ranges) {
        for (const PreparedExpression& range : ranges) forEachNameRead(line, range, visit);
    };
    if (line.assignment) {
        for (const ParsedAssignmentTarget& target : line.assignment->targets) {
            if (line.assignment->operation != TokenKind::Assign) visit(target.tokenIndex);
            readAll(target.keys);
        }
        readAll(line.assignment->values);
        return;
    }
    forEachNameRead(line, line.expression, visit);
    readAll(line.returnValues);
    if (line.forHeader) {
        readAll(line.forHeader->bounds);
        forEachNameRead(line, line.forHeader->iterator, visit);
    }
    if (line.functionHeader) readAll(line.functionHeader->keys);
}

}  // namespace kelmora
