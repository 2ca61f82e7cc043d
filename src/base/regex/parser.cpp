#include <algorithm>
#include <string>

#include "base/regex/bracket_parser.h"
#include "base/regex/byte_classes.h"
#include "base/regex/regex.h"
#include "base/regex/syntax_tree.h"

namespace kelmora::regex {
namespace {

std::uint32_t saturatingAdd(std::uint32_t a, std::uint32_t b) {
    return a > unlimited - b ? unlimited : a + b;
}
std::uint32_t saturatingMultiply(std::uint32_t a, std::uint32_t b) {
    const std::uint64_t product = std::uint64_t{a} * b;
    return product > unlimited ? unlimited : static_cast<std::uint32_t>(product);
}

void follow(Opening& opening, const Opening& next) {
    if (opening.passes) opening.bytes |= next.bytes;
    if (opening.passes || opening.passesAtEnd) opening.opaque |= next.opaque;
    const bool nextEnds = next.passes || next.passesAtEnd;
    opening.passesAtEnd = (opening.passes && next.passesAtEnd) || (opening.passesAtEnd && nextEnds);
    opening.passes = opening.passes && next.passes;
}

// Open groups stand on a heap stack, so nesting costs no native stack.
class Parser {
public:
    Parser(std::string_view source, bool ignoreCase) : source_(source), ignoreCase_(ignoreCase) {}

    SyntaxTree parse() {
        open_.push_back({});
        while (!source_.atEnd()) parseNext();
        if (open_.size() > 1) source_.fail("')'");
        tree_.root = closeChoice();
        tree_.groupCount = groupCount_;
        return std::move(tree_);
    }

private:
    // A group, lookahead or the whole pattern whose end has not been reached.
    struct Open {
        NodeKind kind = NodeKind::empty;  // group, lookahead, or empty for a group that captures nothing
        std::uint32_t group = 0;
        std::uint32_t firstCapture = 0;
        std::vector<std::uint32_t> alternatives;
        std::vector<std::uint32_t> sequence;
        bool quantifiable = false;
    };

    void parseNext() {
        const unsigned c = source_.peek();
        switch (c) {
            case '(':
                return openGroup();
            case ')':
                if (open_.size() == 1) source_.fail("an expression");
                return closeGroup();
            case '|':
                source_.take();
                open_.back().alternatives.push_back(closeSequence());
                open_.back().quantifiable = false;
                return spend(2);
            case '*':
            case '+':
            case '?':
            case '{':
                return parseQuantifier();
            case '^':
                return takeAssertion(NodeKind::lineBegin);
            case '$':
                return takeAssertion(NodeKind::lineEnd);
            case '\\':
                return parseEscape();
            default:
                return parseByteOrClass();
        }
    }

    void parseByteOrClass() {
        const unsigned c = source_.take();
        if (c == '[') return addSet(parseBracket(source_, ignoreCase_));
        if (c != '.') return addSet(singleByte(c, ignoreCase_));
        ByteSet set;
        set.add('\n');
        set.add('\r');
        addSet(set.inverted());
    }

    void takeAssertion(NodeKind kind) {
        source_.take();
        addAssertion(kind);
    }

    void addAssertion(NodeKind kind) {
        Node node;
        node.kind = kind;
        node.states = 1;
        node.opening.passes = kind != NodeKind::lineEnd;
        node.opening.passesAtEnd = true;
        spend(1);
        append(std::move(node), false);
    }

    void addSet(const ByteSet& set) {
        Node node;
        node.kind = NodeKind::set;
        node.minimumLength = 1;
        node.states = 1;
        node.set = set;
        node.opening.bytes = set;
        spend(1);
        append(std::move(node), true);
    }

    void parseEscape() {
        source_.take();
        if (source_.atEnd()) source_.fail("a character after '\\'");
        const unsigned c = source_.peek();
        if (c >= '1' && c <= '9') return addBackReference();
        source_.take();
        if (c == 'b' || c == 'B')
            return addAssertion(c == 'b' ? NodeKind::wordBoundary : NodeKind::notWordBoundary);
        if (const int value = controlEscape(c); value >= 0)
            return addSet(singleByte(static_cast<unsigned>(value), ignoreCase_));
        if (c == 'x' || c == 'u')
            return addSet(singleByte(source_.takeHexadecimal(c == 'x' ? 2 : 4), ignoreCase_));
        if (c == 'c') return addSet(singleByte(source_.takeControl(), ignoreCase_));
        if (std::string_view("dDsSwW").find(static_cast<char>(c)) != std::string_view::npos)
            return addSet(escapedClass(c));
        addSet(singleByte(c, ignoreCase_));
    }

    void addBackReference() {
        Node node;
        node.kind = NodeKind::backReference;
        node.value = source_.takeNumber();
        node.states = 1;
        if (node.value > groupCount_) source_.fail("a back-reference to one of the groups so far");
        for (const Open& open : open_)
            if (open.kind == NodeKind::group && open.group == node.value)
                source_.fail("a back-reference to a group that is closed");
        node.opening.opaque = true;
        node.opening.passes = true;
        tree_.hasBackReference = true;
        spend(1);
        append(std::move(node), true);
    }

    void openGroup() {
        if (open_.size() > maximumNesting) throw SyntaxError("groups are too deeply nested (at most 1000)");
        source_.take();
        Open open;
        open.kind = NodeKind::group;
        open.firstCapture = groupCount_ + 1;
        if (source_.takeIf('?')) {
            if (source_.takeIf(':'))
                open.kind = NodeKind::empty;
            else if (source_.takeIf('='))
                open.kind = NodeKind::lookahead;
            else if (source_.takeIf('!'))
                open.kind = NodeKind::negativeLookahead;
            else
                source_.fail("':', '=' or '!' after \"(?\"");
        }
        if (open.kind == NodeKind::group) open.group = ++groupCount_;
        spend(open.kind == NodeKind::empty ? 1 : 2);
        open_.push_back(std::move(open));
    }

    void closeGroup() {
        source_.take();
        const std::uint32_t inner = closeChoice();
        const Open open = std::move(open_.back());
        open_.pop_back();
        if (open.kind == NodeKind::empty) {
            tree_.nodes[inner].states += 1;
            open_.back().sequence.push_back(inner);
            open_.back().quantifiable = true;
            return;
        }
        Node node = parentOf(open.kind, inner);
        node.states += 2;
        if (open.kind == NodeKind::group) {
            node.value = open.group;
            return append(std::move(node), true);
        }
        node.firstCapture = open.firstCapture;
        node.lastCapture = groupCount_ + 1;
        node.minimumLength = 0;
        node.opening = {};
        node.opening.passes = true;
        node.opening.opaque = node.firstCapture != node.lastCapture;
        tree_.hasLookahead = true;
        append(std::move(node), false);
    }

    void parseQuantifier() {
        if (!open_.back().quantifiable) source_.fail("something to repeat");
        const unsigned c = source_.take();
        std::uint32_t minimum = c == '+' ? 1 : 0;
        std::uint32_t maximum = c == '?' ? 1 : unlimited;
        if (c == '{') {
            minimum = maximum = source_.takeNumber();
            if (source_.takeIf(',')) {
                maximum = unlimited;
                if (source_.atEnd() || source_.peek() != '}') maximum = source_.takeNumber();
            }
            if (!source_.takeIf('}')) source_.fail("'}'");
            if (minimum > maximum) source_.fail("a repeat whose limits are in order");
        }
        auto& sequence = open_.back().sequence;
        Node node = parentOf(c == '+' ? NodeKind::oneOrMore : NodeKind::repeat, sequence.back());
        sequence.pop_back();
        node.minimum = minimum;
        node.maximum = maximum;
        node.lazy = source_.takeIf('?');
        chargeRepeat(node, c == '{');
        node.minimumLength = saturatingMultiply(node.minimumLength, minimum);
        if (maximum == 0) node.opening = {};
        if (minimum == 0) node.opening.passes = node.opening.passesAtEnd = true;
        append(std::move(node), true);
    }

    // Counted repeats are copies of what they repeat.
    void chargeRepeat(Node& node, bool counted) {
        const std::uint64_t copy = node.states;
        if (!counted) {
            const std::uint64_t extra = node.maximum == 1 ? 2 : 1;
            node.states += extra;
            return spend(extra);
        }
        node.states = 1 + node.minimum * copy;
        if (node.maximum == unlimited)
            node.states += copy + 1;
        else
            node.states += 1 + std::uint64_t{node.maximum - node.minimum} * (copy + 1);
        spend(node.states);
    }

    void spend(std::uint64_t states) {
        states_ += states;
        if (states_ > maximumStates)
            throw SyntaxError("the pattern is too large once its counted repeats are written out");
    }

    // A node with one child, that has its length, opening and states.
    Node parentOf(NodeKind kind, std::uint32_t childIndex) {
        const Node& child = tree_.nodes[childIndex];
        Node node;
        node.kind = kind;
        node.minimumLength = child.minimumLength;
        node.states = child.states;
        node.opening = child.opening;
        node.firstChild = static_cast<std::uint32_t>(tree_.children.size());
        node.childCount = 1;
        tree_.children.push_back(childIndex);
        return node;
    }

    void append(Node node, bool quantifiable) {
        open_.back().sequence.push_back(add(std::move(node)));
        open_.back().quantifiable = quantifiable;
    }

    std::uint32_t add(Node node) {
        tree_.nodes.push_back(std::move(node));
        return static_cast<std::uint32_t>(tree_.nodes.size() - 1);
    }

    void takeChildren(Node& node, const std::vector<std::uint32_t>& children) {
        node.firstChild = static_cast<std::uint32_t>(tree_.children.size());
        node.childCount = static_cast<std::uint32_t>(children.size());
        tree_.children.insert(tree_.children.end(), children.begin(), children.end());
    }

    std::uint32_t closeSequence() {
        auto sequence = std::move(open_.back().sequence);
        open_.back().sequence.clear();
        spend(1);
        if (sequence.size() == 1) {
            tree_.nodes[sequence[0]].states += 1;
            return sequence[0];
        }
        Node node;
        node.kind = sequence.empty() ? NodeKind::empty : NodeKind::sequence;
        node.states = 1;
        node.opening.passes = node.opening.passesAtEnd = true;
        takeChildren(node, sequence);
        for (const std::uint32_t index : sequence) {
            const Node& child = tree_.nodes[index];
            node.minimumLength = saturatingAdd(node.minimumLength, child.minimumLength);
            node.states += child.states;
            follow(node.opening, child.opening);
        }
        return add(std::move(node));
    }

    std::uint32_t closeChoice() {
        auto alternatives = std::move(open_.back().alternatives);
        alternatives.push_back(closeSequence());
        if (alternatives.size() == 1) return alternatives[0];
        Node node;
        node.kind = NodeKind::choice;
        node.minimumLength = unlimited;
        node.states = 2 * (alternatives.size() - 1);
        takeChildren(node, alternatives);
        bool allSets = true;
        for (const std::uint32_t index : alternatives) {
            const Node& child = tree_.nodes[index];
            node.minimumLength = std::min(node.minimumLength, child.minimumLength);
            node.states += child.states;
            node.opening.bytes |= child.opening.bytes;
            node.opening.passes |= child.opening.passes;
            node.opening.passesAtEnd |= child.opening.passesAtEnd;
            node.opening.opaque |= child.opening.opaque;
            node.set |= child.set;
            allSets = allSets && child.kind == NodeKind::set;
        }
        if (allSets) node.kind = NodeKind::set;
        return add(std::move(node));
    }

    Source source_;
    bool ignoreCase_;
    SyntaxTree tree_;
    std::vector<Open> open_;
    std::uint32_t groupCount_ = 0;
    std::uint64_t states_ = 3;  // what every pattern has: its beginning, its end and acceptance
};

}  // namespace

SyntaxTree parse(std::string_view source, bool ignoreCase) {
    return Parser(source, ignoreCase).parse();
}

}  // namespace kelmora::regex
