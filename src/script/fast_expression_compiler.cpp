#include "script/fast_expression.h"
#include "script/parsed_line.h"

namespace kelmora {
namespace {

// Deeper expressions go to the token walk, which guards its recursion.
constexpr int maximumNesting = 100;

// The grammar of the token walk, without evaluation. Every function gives -1 when it cannot go on.
class Parser {
public:
    Parser(const ParsedScriptLine& line, std::uint32_t first, std::uint32_t last)
        : line_(line), at_(first), last_(last) {}

    FastExpression run() {
        const std::int32_t root = parseExpression(1);
        if (root < 0 || at_ != last_) return {};
        expression_.root = root;
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
    bool mayCall(std::int32_t node) const {
        return expression_.nodes[static_cast<std::size_t>(node)].mayCall;
    }

    std::int32_t addNode(const FastExprNode& node) {
        expression_.nodes.push_back(node);
        return static_cast<std::int32_t>(expression_.nodes.size() - 1);
    }
    std::int32_t addConstant(const Variable& value) {
        FastExprNode node;
        node.value = static_cast<std::uint32_t>(expression_.constants.size());
        expression_.constants.push_back(value);
        return addNode(node);
    }
    std::int32_t addUnary(FastExprNodeKind kind, std::int32_t operand) {
        FastExprNode node;
        node.kind = kind;
        node.left = operand;
        node.mayCall = mayCall(operand);
        return addNode(node);
    }
    std::int32_t addPair(FastExprNodeKind kind, TokenKind operation, std::int32_t left, std::int32_t right) {
        FastExprNode node;
        node.kind = kind;
        node.operation = operation;
        node.left = left;
        node.right = right;
        node.mayCall = mayCall(left) || mayCall(right);
        return addNode(node);
    }

    std::int32_t parseExpression(int minimumPrecedence) {
        if (++nesting_ > maximumNesting) return -1;
        std::int32_t left = parseOperand();
        while (left >= 0) {
            const TokenKind operation = kindAt(at_);
            const int precedence = binaryPrecedence(operation);
            if (precedence == 0 || precedence < minimumPrecedence) break;
            ++at_;
            const std::int32_t right =
                parseExpression(isRightAssociative(operation) ? precedence : precedence + 1);
            if (right < 0) return -1;
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
            default:
                break;
        }
        if (!token.isIdentifier()) return -1;
        ++at_;
        FastExprNode node;
        node.kind = token.isScoped() ? FastExprNodeKind::ScopedVariable : FastExprNodeKind::Variable;
        node.scope = token.scope;
        node.value = token.name;
        return parsePostfix(addNode(node));
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
        if (!take(TokenKind::CloseParenthesis)) {
            for (;;) {
                const std::int32_t argument = parseExpression(1);
                if (argument < 0) return -1;
                arguments.push_back(argument);
                if (take(TokenKind::CloseParenthesis)) break;
                if (!take(TokenKind::Comma)) return -1;
            }
        }
        FastExprNode node;
        node.kind = FastExprNodeKind::Call;
        node.left = callee;
        node.right = static_cast<std::int32_t>(expression_.callArguments.size());
        node.value = static_cast<std::uint32_t>(arguments.size());
        node.mayCall = true;
        expression_.callArguments.insert(expression_.callArguments.end(), arguments.begin(), arguments.end());
        return addNode(node);
    }

    const ParsedScriptLine& line_;
    FastExpression expression_;
    std::uint32_t at_;
    std::uint32_t last_;
    int nesting_ = 0;
};

}  // namespace

FastExpression compileFastExpressionRange(const ParsedScriptLine& line, std::uint32_t first,
                                          std::uint32_t last) {
    return Parser(line, first, last).run();
}

}  // namespace kelmora
