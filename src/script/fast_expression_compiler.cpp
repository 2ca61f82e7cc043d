#include <algorithm>
#include <vector>

#include "script/fast_expression.h"
#include "script/parsed_line.h"
#include "script/string_constants.h"

namespace kelmora {
namespace {

// Deeper expressions go to the token walk, which guards its recursion: by brackets and prefixes, and as
// trees, which long chains of operators, calls and keys are too. Compiling a tree recurses and holds three
// values a level.
constexpr int maximumNesting = 100;
constexpr int maximumDepth = 150;

// The grammar of the token walk, without evaluation. Every function gives -1 when it cannot go on.
class Parser {
public:
    Parser(const ParsedScriptLine& line, std::uint32_t first, std::uint32_t last)
        : line_(line), at_(first), last_(last) {}

    FastExpression run() {
        const std::int32_t root = parseExpression(1);
        if (root < 0 || at_ != last_) return {};
        return std::move(expression_);
    }

private:
    TokenKind kindAt(std::uint32_t index) const {
        return index < last_ ? line_.analysis[index].kind : TokenKind::Unknown;
    }
    bool take(TokenKind kind) {
        if (kindAt(at_) != kind) return false;
        ++at_;
        return true;
    }
    FastExprNode& nodeAt(std::int32_t index) { return expression_.nodes[static_cast<std::size_t>(index)]; }
    bool mayCall(std::int32_t node) { return nodeAt(node).mayCall; }

    std::int32_t nextIndex() const { return static_cast<std::int32_t>(expression_.nodes.size()); }
    int depthOf(std::int32_t node) const { return depths_[static_cast<std::size_t>(node)]; }
    // Over operands of this depth.
    std::int32_t addNode(FastExprNode node, int below = 0) {
        if (below == maximumDepth) return -1;
        depths_.push_back(below + 1);
        expression_.nodes.push_back(std::move(node));
        return nextIndex() - 1;
    }
    std::int32_t addConstant(const Variable& value) {
        FastExprNode node;
        node.constant = value;
        return addNode(std::move(node));
    }
    std::int32_t addUnary(FastExprNodeKind kind, std::int32_t operand) {
        FastExprNode node;
        node.kind = kind;
        node.left = operand - nextIndex();
        node.mayCall = mayCall(operand);
        return addNode(std::move(node), depthOf(operand));
    }
    std::int32_t addPair(FastExprNodeKind kind, TokenKind operation, std::int32_t left, std::int32_t right) {
        FastExprNode node;
        node.kind = kind;
        node.operation = operation;
        node.left = left - nextIndex();
        node.right = right - nextIndex();
        node.mayCall = mayCall(left) || mayCall(right);
        return addNode(std::move(node), std::max(depthOf(left), depthOf(right)));
    }
    // Chains the items and hangs them on a new node.
    std::int32_t addList(FastExprNode node, const std::vector<std::int32_t>& items) {
        for (std::size_t i = 0; i + 1 < items.size(); ++i) nodeAt(items[i]).next = items[i + 1] - items[i];
        for (const std::int32_t item : items) node.mayCall = node.mayCall || mayCall(item);
        if (!items.empty()) node.right = items[0] - nextIndex();
        node.count = static_cast<std::uint32_t>(items.size());
        int below = node.left < 0 ? depthOf(nextIndex() + node.left) : 0;
        for (const std::int32_t item : items) below = std::max(below, depthOf(item));
        return addNode(std::move(node), below);
    }

    std::int32_t parseExpression(int minimumPrecedence) {
        if (++nesting_ > maximumNesting) return -1;
        std::int32_t left = parseOperand();
        while (left >= 0) {
            const TokenKind operation = kindAt(at_);
            const int precedence = binaryPrecedence(operation);
            if (precedence == 0 || precedence < minimumPrecedence) break;
            ++at_;
            const bool isLogical = operation == TokenKind::And || operation == TokenKind::Or;
            skippable_ += isLogical ? 1 : 0;
            const std::int32_t right =
                parseExpression(isRightAssociative(operation) ? precedence : precedence + 1);
            if (right < 0) return -1;
            skippable_ -= isLogical ? 1 : 0;
            FastExprNodeKind kind = FastExprNodeKind::Binary;
            if (operation == TokenKind::And) kind = FastExprNodeKind::And;
            if (operation == TokenKind::Or) kind = FastExprNodeKind::Or;
            left = addPair(kind, operation, left, right);
        }
        --nesting_;
        return left;
    }

    std::int32_t parseOperand() {
        const TokenKind kind = kindAt(at_);
        switch (kind) {
            case TokenKind::Not:
                // At the range's end the next token decides: a comma and the end of the line are boundaries.
                if (at_ + 1 >= last_ || isStandaloneNotBoundary(kindAt(at_ + 1))) {
                    ++at_;
                    return addConstant(Variable());
                }
                return parsePrefixed(FastExprNodeKind::Not);
            case TokenKind::Exclamation:
                return parsePrefixed(FastExprNodeKind::Not);
            case TokenKind::Length:
                return parsePrefixed(FastExprNodeKind::Length);
            case TokenKind::Plus:
                return parsePrefixed(FastExprNodeKind::Identity);
            case TokenKind::Minus:
                return parsePrefixed(FastExprNodeKind::Negate);
            default:
                return parsePrimary();
        }
    }
    std::int32_t parsePrefixed(FastExprNodeKind kind) {
        ++at_;
        const std::int32_t operand = parseExpression(7);
        return operand < 0 ? -1 : addUnary(kind, operand);
    }

    std::int32_t parsePrimary() {
        if (at_ >= last_) return -1;
        const TokenAnalysis& token = line_.analysis[at_];
        switch (token.kind) {
            case TokenKind::Int:
            case TokenKind::Float:
                ++at_;
                return addConstant(token.literal);
            case TokenKind::String:
            case TokenKind::True:
            case TokenKind::False:
            case TokenKind::Pointer:
                ++at_;
                return parsePostfix(addConstant(token.literal));
            case TokenKind::OpenParenthesis: {
                ++at_;
                const std::int32_t inner = parseExpression(1);
                return inner < 0 || !take(TokenKind::CloseParenthesis) ? -1 : parsePostfix(inner);
            }
            case TokenKind::OpenBracket:
                return parsePostfix(parseArray());
            case TokenKind::OpenBrace:
                return parsePostfix(parseTable());
            case TokenKind::Ellipsis: {
                // Outside a variadic call it is an error, on a skipped side too: the walk looks for that.
                if (skippable_ > 0) return -1;
                ++at_;
                expression_.makesContainers = true;
                FastExprNode node;
                node.kind = FastExprNodeKind::Varargs;
                return parsePostfix(addNode(std::move(node)));
            }
            default:
                break;
        }
        if (!token.isIdentifier()) return -1;
        ++at_;
        FastExprNode node;
        node.kind = token.isScoped() ? FastExprNodeKind::ScopedVariable : FastExprNodeKind::Variable;
        node.scope = token.scope;
        node.name = token.name;
        return parsePostfix(addNode(std::move(node)));
    }

    // Expressions with commas between them, up to the closing sign. False when something else stands there.
    bool parseItems(TokenKind close, std::vector<std::int32_t>& items) {
        if (take(close)) return true;
        for (;;) {
            const std::int32_t item = parseExpression(1);
            if (item < 0) return false;
            items.push_back(item);
            if (take(close)) return true;
            if (!take(TokenKind::Comma)) return false;
        }
    }

    std::int32_t parseArray() {
        ++at_;
        expression_.makesContainers = true;
        std::vector<std::int32_t> items;
        if (!parseItems(TokenKind::CloseBracket, items)) return -1;
        FastExprNode node;
        node.kind = FastExprNodeKind::Array;
        return addList(std::move(node), items);
    }

    std::int32_t parseTable() {
        ++at_;
        expression_.makesContainers = true;
        std::vector<std::int32_t> entries;
        bool hasKeys = false;
        while (!take(TokenKind::CloseBrace)) {
            const bool keyed = kindAt(at_) == TokenKind::OpenBracket || atKeyedEntry();
            const std::int32_t entry = keyed ? parseKeyedEntry() : parseExpression(1);
            if (entry < 0) return -1;
            entries.push_back(entry);
            hasKeys = hasKeys || keyed;
            if (!take(TokenKind::Comma) && kindAt(at_) != TokenKind::CloseBrace) return -1;
        }
        FastExprNode node;
        node.kind = hasKeys || entries.empty() ? FastExprNodeKind::Table : FastExprNodeKind::Array;
        return addList(std::move(node), entries);
    }
    bool atKeyedEntry() const {
        return kindAt(at_ + 1) == TokenKind::Colon || kindAt(at_ + 1) == TokenKind::Assign;
    }
    std::int32_t parseKeyedEntry() {
        std::int32_t key = -1;
        if (take(TokenKind::OpenBracket)) {
            key = parseExpression(1);
            if (key < 0 || !take(TokenKind::CloseBracket)) return -1;
            if (!take(TokenKind::Colon) && !take(TokenKind::Assign)) return -1;
        } else {
            const TokenAnalysis& word = line_.analysis[at_];
            const bool isWord = word.isIdentifier() || word.kind == TokenKind::Int ||
                                word.kind == TokenKind::Float || word.kind == TokenKind::String;
            if (!isWord) return -1;
            key = addConstant(word.kind == TokenKind::String ? word.literal
                                                             : stringConstant(line_.tokens[at_]));
            at_ += 2;
        }
        const std::int32_t value = parseExpression(1);
        return value < 0 ? -1 : addPair(FastExprNodeKind::KeyEntry, TokenKind::Unknown, key, value);
    }

    std::int32_t parsePostfix(std::int32_t base) {
        while (base >= 0) {
            if (take(TokenKind::OpenParenthesis)) {
                base = parseCall(base);
            } else if (take(TokenKind::OpenBracket)) {
                const std::int32_t key = parseExpression(1);
                if (key < 0 || !take(TokenKind::CloseBracket)) return -1;
                base = addPair(FastExprNodeKind::Index, TokenKind::Unknown, base, key);
            } else {
                break;
            }
        }
        return base;
    }
    std::int32_t parseCall(std::int32_t callee) {
        std::vector<std::int32_t> arguments;
        if (!parseItems(TokenKind::CloseParenthesis, arguments)) return -1;
        FastExprNode node;
        node.kind = FastExprNodeKind::Call;
        node.left = callee - nextIndex();
        node.mayCall = true;
        return addList(std::move(node), arguments);
    }

    const ParsedScriptLine& line_;
    FastExpression expression_;
    std::vector<int> depths_;  // of the nodes
    std::uint32_t at_;
    std::uint32_t last_;
    int nesting_ = 0;
    int skippable_ = 0;  // right sides of `and` and `or` around here
};

}  // namespace

FastExpression compileFastExpressionRange(const ParsedScriptLine& line, std::uint32_t first,
                                          std::uint32_t last) {
    return Parser(line, first, last).run();
}

}  // namespace kelmora
