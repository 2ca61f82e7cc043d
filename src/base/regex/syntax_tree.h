#pragma once

#include <cstdint>
#include <limits>
#include <string_view>
#include <vector>

#include "base/regex/byte_set.h"

namespace kelmora::regex {

inline constexpr std::uint32_t unlimited = std::numeric_limits<std::uint32_t>::max();

// What can be said of the places where a part of a pattern can begin to match. Always a superset of the
// truth.
struct Opening {
    ByteSet bytes;             // it may begin by taking one of these
    bool passes = false;       // it may match without taking a byte
    bool passesAtEnd = false;  // the same, at the end of the subject only
    bool opaque = false;       // trying it can have effects or outcomes the bytes do not tell
};

enum class NodeKind : std::uint8_t {
    empty,
    set,        // one byte of `set`
    sequence,   // children
    choice,     // children, tried in order
    group,      // one child, captured as `value`
    repeat,     // one child, minimum to maximum times
    oneOrMore,  // one child; unlike a repeat from 1 the first round shares its loops' state with the others
    lineBegin,
    lineEnd,
    wordBoundary,
    notWordBoundary,
    lookahead,  // one child; captures from firstCapture up to lastCapture
    negativeLookahead,
    backReference  // to the group `value`
};

struct Node {
    NodeKind kind = NodeKind::empty;
    bool lazy = false;
    std::uint32_t value = 0;
    std::uint32_t minimum = 0;
    std::uint32_t maximum = 0;
    std::uint32_t firstCapture = 0;
    std::uint32_t lastCapture = 0;  // exclusive
    std::uint32_t firstChild = 0;   // index into SyntaxTree::children
    std::uint32_t childCount = 0;
    std::uint32_t minimumLength = 0;  // bytes taken by the shortest match, saturating
    std::uint64_t states = 0;         // cost of one copy against maximumStates
    ByteSet set;
    Opening opening;
};

// Nodes refer to each other by index; children stand before their parents.
struct SyntaxTree {
    std::vector<Node> nodes;
    std::vector<std::uint32_t> children;
    std::uint32_t root = 0;
    std::uint32_t groupCount = 0;
    bool hasLookahead = false;
    bool hasBackReference = false;

    std::uint32_t child(const Node& node, std::uint32_t i = 0) const { return children[node.firstChild + i]; }
};

// Throws SyntaxError.
SyntaxTree parse(std::string_view source, bool ignoreCase);

}  // namespace kelmora::regex
