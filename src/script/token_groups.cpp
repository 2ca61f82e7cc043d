#include "script/token_groups.h"

namespace kelmora {

int bracketStep(TokenKind kind) {
    switch (kind) {
        case TokenKind::OpenParenthesis:
        case TokenKind::OpenBracket:
        case TokenKind::OpenBrace:
            return 1;
        case TokenKind::CloseParenthesis:
        case TokenKind::CloseBracket:
        case TokenKind::CloseBrace:
            return -1;
        default:
            return 0;
    }
}

PreparedExpression prepareExpression(const ParsedScriptLine& line, std::uint32_t first, std::uint32_t last) {
    return {first, last, compileFastExpressionRange(line, first, last)};
}

std::vector<PreparedExpression> splitAtCommas(const ParsedScriptLine& line, std::uint32_t first,
                                              std::uint32_t last) {
    std::vector<PreparedExpression> parts;
    int depth = 0;
    std::uint32_t start = first;
    for (std::uint32_t i = first; i < last; ++i) {
        const TokenKind kind = line.analysis[i].kind;
        depth += bracketStep(kind);
        if (kind == TokenKind::Comma && depth <= 0) {
            parts.push_back(prepareExpression(line, start, i));
            start = i + 1;
        }
    }
    parts.push_back(prepareExpression(line, start, last));
    return parts;
}

std::uint32_t closingToken(const ParsedScriptLine& line, std::uint32_t open) {
    int depth = 0;
    const auto count = static_cast<std::uint32_t>(line.tokens.size());
    for (std::uint32_t i = open; i < count; ++i) {
        depth += bracketStep(line.analysis[i].kind);
        if (depth == 0) return i;
    }
    return count;
}

}  // namespace kelmora
