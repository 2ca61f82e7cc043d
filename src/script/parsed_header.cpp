#include "script/parsed_header.h"

#include "script/token_groups.h"

namespace kelmora {
namespace {

bool isKind(const ParsedScriptLine& line, std::uint32_t index, TokenKind kind) {
    return index < line.tokens.size() && line.analysis[index].kind == kind;
}

bool isNameAt(const ParsedScriptLine& line, std::uint32_t index) {
    return index < line.tokens.size() && line.analysis[index].isPlainIdentifier();
}

// Loop variables and parameters are of their own scope, whatever scope is written behind the name.
bool isVariableAt(const ParsedScriptLine& line, std::uint32_t index) {
    return index < line.tokens.size() && line.analysis[index].isIdentifier();
}

// Recognises `pairs(x)` and `ipairs(x)` as the whole of the iterated expression.
void recogniseWalk(const ParsedScriptLine& line, ParsedFor& header) {
    static const NameId pairsName = internName("pairs");
    static const NameId ipairsName = internName("ipairs");
    const std::uint32_t at = header.iterator.first;
    if (!isNameAt(line, at) || !isKind(line, at + 1, TokenKind::OpenParenthesis)) return;
    const NameId name = line.analysis[at].name;
    if (name != pairsName && name != ipairsName) return;
    if (closingToken(line, at + 1) + 1 != line.tokens.size()) return;
    const auto last = static_cast<std::uint32_t>(line.tokens.size() - 1);
    if (splitAtCommas(line, at + 2, last).size() != 1 || at + 2 == last) return;
    header.builtin = name == pairsName ? BuiltinId::Pairs : BuiltinId::Ipairs;
    header.argument = prepareExpression(line, at + 2, last);
}

void readGenericFor(const ParsedScriptLine& line, ParsedFor& header) {
    std::uint32_t at = 1;
    for (;;) {
        if (!isVariableAt(line, at)) {
            header.fault = {"Expected loop variable name", at};
            return;
        }
        header.names.push_back(line.analysis[at++].name);
        if (!isKind(line, at, TokenKind::Comma)) break;
        ++at;
    }
    if (at >= line.tokens.size() || line.tokens[at] != "in") {
        header.fault = {"Expected 'in' in generic for loop", at};
        return;
    }
    header.iterator = prepareExpression(line, at + 1, static_cast<std::uint32_t>(line.tokens.size()));
    recogniseWalk(line, header);
}

class FunctionHeaderReader {
public:
    explicit FunctionHeaderReader(const ParsedScriptLine& line) : line_(line) {}

    ParsedFunctionHeader read() {
        at_ = line_.kind == ParsedLineKind::Function ? 1 : 2;
        header_.nameToken = at_;
        if (!isNameAt(line_, at_)) return fail("Expected function target");
        ++at_;
        while (isKind(line_, at_, TokenKind::OpenBracket)) {
            const std::uint32_t close = closingToken(line_, at_);
            if (!isKind(line_, close, TokenKind::CloseBracket))
                return fail("Expected closing bracket in function target");
            header_.keys.push_back(prepareExpression(line_, at_ + 1, close));
            at_ = close + 1;
        }
        if (!isKind(line_, at_, TokenKind::OpenParenthesis))
            return fail("Expected '(' after function target");
        ++at_;
        return readParameters();
    }

private:
    ParsedFunctionHeader fail(std::string_view message) {
        header_.fault = {message, at_};
        return std::move(header_);
    }
    ParsedFunctionHeader readParameters() {
        if (!isKind(line_, at_, TokenKind::CloseParenthesis)) {
            for (;;) {
                if (isKind(line_, at_, TokenKind::Ellipsis)) {
                    header_.isVariadic = true;
                    ++at_;
                    if (!isKind(line_, at_, TokenKind::CloseParenthesis))
                        return fail("Expected ')' after function parameters");
                    break;
                }
                if (!isVariableAt(line_, at_)) return fail("Expected function parameter name");
                header_.parameters.push_back(line_.analysis[at_++].name);
                if (isKind(line_, at_, TokenKind::CloseParenthesis)) break;
                if (!isKind(line_, at_, TokenKind::Comma))
                    return fail("Expected ',' or ')' after function parameter");
                ++at_;
            }
        }
        ++at_;
        if (at_ < line_.tokens.size()) return fail("Unexpected token after function declaration");
        return std::move(header_);
    }

    const ParsedScriptLine& line_;
    ParsedFunctionHeader header_;
    std::uint32_t at_ = 0;
};

}  // namespace

bool isNumericFor(const ParsedScriptLine& line) {
    return line.tokens.size() >= 4 && line.analysis[1].isIdentifier() && line.tokens[2] == "=";
}

ParsedFor parseForHeader(const ParsedScriptLine& line) {
    ParsedFor header;
    header.isNumeric = isNumericFor(line);
    if (header.isNumeric) {
        header.names.push_back(line.analysis[1].name);
        header.bounds = splitAtCommas(line, 3, static_cast<std::uint32_t>(line.tokens.size()));
    } else {
        readGenericFor(line, header);
    }
    return header;
}

ParsedFunctionHeader parseFunctionHeader(const ParsedScriptLine& line) {
    return FunctionHeaderReader(line).read();
}

}  // namespace kelmora
