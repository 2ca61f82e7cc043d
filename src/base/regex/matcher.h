#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/regex/program.h"
#include "base/regex/regex.h"

namespace kelmora::regex {

// Subjects stay below 2 GiB, so half-size positions keep the stack small.
using Position = std::uint32_t;
inline constexpr Position noPosition = 0xFFFF'FFFF;

// What to do when the match cannot go on.
struct Pending {
    enum class Kind : std::uint32_t {
        branch,        // go on at `where` from position a
        capture,       // slot `where` gets back a
        guard,         // guard `where` gets back a
        loopBack,      // the loop of instruction `where` gives back bytes: from b down to a
        loopForward,   // the lazy loop of instruction `where` takes more: from a up to b
        guardedRound,  // the lazy guarded loop `where` takes another round at a
        look           // the lookahead `where` begun at a failed; b is the enclosing one's entry
    };

    std::uint32_t kindAndWhere = 0;
    std::uint32_t a = 0;
    std::uint32_t b = 0;

    Kind kind() const { return static_cast<Kind>(kindAndWhere & 7); }
    std::uint32_t where() const { return kindAndWhere >> 3; }
};

struct SearchMemory {
    std::vector<Pending> stack;
    std::vector<Position> captures;  // begin and end of each group; an end of noPosition: took no part
    std::vector<Position> guards;
};

// One search.
class Matcher {
public:
    Matcher(const Program& program, std::string_view subject, SearchMemory& memory, MatchFlags flags,
            const Limits& limits);

    bool search(std::size_t from, Captures& out);

private:
    bool searchFrom(Position from);
    bool nextStart(Position& start) const;
    bool nextPrefix(Position& start) const;
    bool attempt(Position start);
    bool backtrack(std::uint32_t& at, Position& position);

    void push(Pending::Kind kind, std::uint32_t where, std::uint32_t a, std::uint32_t b = 0) {
        if (top_ == capacity_) grow();
        stack_[top_++] = {where << 3 | static_cast<std::uint32_t>(kind), a, b};
    }
    void grow();
    void charge(std::uint64_t steps) {
        if (steps > stepsLeft_) outOfSteps();
        stepsLeft_ -= steps;
    }
    [[noreturn]] static void outOfSteps();

    bool worthTrying(Filter filter, Position position) const {
        if (filter == noFilter) return true;
        if (position == end_) return (filter & 1) != 0;
        return program_.inSet(filter >> 1, byteAt(position));
    }
    unsigned char byteAt(Position position) const { return text_[position]; }

    bool split(const Instruction& instruction, std::uint32_t& at, Position position);
    bool splitLazy(const Instruction& instruction, std::uint32_t& at, Position position);
    void setCapture(std::uint32_t slot, Position value);

    Position runEnd(const Loop& loop, Position position, Position limit) const;
    bool takeRun(const Loop& loop, Position& position);
    bool lastWorthTrying(const Loop& loop, Position lowest, Position& position) const;
    bool loopPossessive(const Loop& loop, Position& position);
    bool loopGreedy(std::uint32_t at, Position& position);
    bool loopLazy(std::uint32_t at, Position& position);
    bool takeLazily(std::uint32_t at, Position position, Position highest, Position& reached);
    bool loopCapture(std::uint32_t at, Position& position);
    void captureRound(const Loop& loop, Position start, Position position);
    bool giveBack(Pending entry, Position& position);

    void guardedLoop(std::uint32_t& at, Position position);
    bool guardedRound(std::uint32_t& at, Position position);

    bool atLineBegin(Position position) const;
    bool atLineEnd(Position position) const;
    bool atWordBoundary(Position position) const;
    bool isWord(Position position) const;
    bool backReference(std::uint32_t group, Position& position);
    bool acceptable(Position position) const {
        return position != begin_ || !has(flags_, MatchFlags::notNull);
    }

    void beginLook(std::uint32_t at, Position position);
    bool acceptLook(std::uint32_t& at, Position& position);
    void leaveLook(const Pending& entry);
    void report(Captures& out, Position start, Position end) const;

    const Program& program_;
    const unsigned char* text_;
    Position end_;
    SearchMemory& memory_;
    MatchFlags flags_;
    std::size_t maximumEntries_;
    std::uint64_t stepsLeft_;

    Pending* stack_;
    std::size_t top_ = 0;
    std::size_t capacity_;
    Position* captures_ = nullptr;
    Position* guards_ = nullptr;

    bool seesPrevious_ = false;        // bytes before the start of the attempt count
    Position start_ = 0;               // of the attempt
    Position begin_ = 0;               // of the attempt or of the innermost lookahead
    std::uint32_t look_ = noPosition;  // entry of the innermost lookahead
    Position matchEnd_ = 0;
};

}  // namespace kelmora::regex
