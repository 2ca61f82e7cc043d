#include "base/regex/matcher.h"

#include <algorithm>
#include <cstring>

#include "base/regex/byte_classes.h"

namespace kelmora::regex {
namespace {

using Kind = Pending::Kind;

// Bytes a scan goes over for one step.
constexpr unsigned bytesPerStep = 16;

// A guard holds where its loop last began a round, and whether it did so once or twice there.
constexpr Position guardOf(Position position, bool twice) {
    return position << 1 | (twice ? 1u : 0u);
}

Position findByte(const unsigned char* text, unsigned char byte, Position from, Position to) {
    const void* found = std::memchr(text + from, byte, to - from);
    return found ? static_cast<Position>(static_cast<const unsigned char*>(found) - text) : to;
}

}  // namespace

Matcher::Matcher(const Program& program, std::string_view subject, SearchMemory& memory, MatchFlags flags,
                 const Limits& limits)
    : program_(program),
      text_(reinterpret_cast<const unsigned char*>(subject.data())),
      end_(static_cast<Position>(subject.size())),
      memory_(memory),
      flags_(flags),
      maximumEntries_(limits.stackBytes / sizeof(Pending)),
      stepsLeft_(limits.steps + limits.stepsPerByte * subject.size()),
      stack_(memory.stack.data()),
      capacity_(std::min(memory.stack.size(), maximumEntries_)) {}

bool Matcher::search(std::size_t from, Captures& out) {
    if (from > end_ || end_ - from < program_.plan.minimumLength) return false;
    const Position begin = static_cast<Position>(from);
    if (program_.plan.wholeIsPrefix && !has(flags_, MatchFlags::continuous)) {
        Position found = begin;
        if (!nextPrefix(found)) return false;
        report(out, found, found + static_cast<Position>(program_.plan.prefix.size()));
        return true;
    }
    memory_.captures.resize(2 * (std::size_t{program_.groupCount} + 1));
    memory_.guards.assign(program_.guardCount, noPosition);
    captures_ = memory_.captures.data();
    guards_ = memory_.guards.data();
    if (!searchFrom(begin)) return false;
    report(out, start_, matchEnd_);
    return true;
}

bool Matcher::searchFrom(Position from) {
    const SearchPlan& plan = program_.plan;
    seesPrevious_ = from > 0 && !has(flags_, MatchFlags::ignorePrevious);
    if (seesPrevious_) flags_ = without(flags_, MatchFlags::notLineBegin | MatchFlags::notWordBegin);
    const bool once = has(flags_, MatchFlags::continuous) || plan.kind == SearchPlan::Kind::onlyFirst;
    if (once) return attempt(from);
    const Position last = end_ - plan.minimumLength;
    for (Position start = from;; ++start) {
        if (!nextStart(start) || start > last) return false;
        seesPrevious_ = seesPrevious_ || start > from;
        if (attempt(start)) return true;
        if (start == last) return false;
        if (plan.skipsRuns) {
            const Position run = runEnd(program_.loops[plan.leadingLoop], start, end_);
            charge((run - start) / bytesPerStep);
            if (run > last) return false;
            start = std::max(start, run - (run > start ? 1 : 0));
        }
    }
}

// Moves to the first place, here or later, where an attempt could succeed.
bool Matcher::nextStart(Position& start) const {
    const SearchPlan& plan = program_.plan;
    if (plan.kind == SearchPlan::Kind::prefix) return nextPrefix(start);
    if (plan.kind != SearchPlan::Kind::filter) return true;
    const std::uint8_t* table = program_.tables[plan.filter >> 4].data();
    const unsigned mask = 1u << ((plan.filter >> 1) & 7);
    Position position = start;
    while (position < end_ && (table[text_[position]] & mask) == 0) ++position;
    start = position;
    return position < end_ || (plan.filter & 1) != 0;
}

bool Matcher::nextPrefix(Position& start) const {
    const std::string& prefix = program_.plan.prefix;
    const Position size = static_cast<Position>(prefix.size());
    const auto first = static_cast<unsigned char>(prefix[0]);
    while (end_ - start >= size) {
        const Position last = end_ - size + 1;
        start = findByte(text_, first, start, last);
        if (start == last) return false;
        if (std::memcmp(text_ + start, prefix.data(), size) == 0) return true;
        ++start;
    }
    return false;
}

bool Matcher::attempt(Position start) {
    start_ = begin_ = start;
    look_ = noPosition;
    top_ = 0;
    for (std::size_t group = 1; group <= program_.groupCount; ++group) captures_[2 * group + 1] = noPosition;
    const Instruction* code = program_.code.data();
    std::uint32_t at = 0;
    Position position = start;
    // A case that goes on in the loop has succeeded; one that leaves the switch has failed.
    for (;;) {
        charge(1);
        const Instruction& instruction = code[at];
        switch (instruction.op) {
            case Op::byte:
                if (position == end_ || text_[position] != instruction.a) break;
                ++position;
                ++at;
                continue;
            case Op::literal:
                if (end_ - position < instruction.b) break;
                if (std::memcmp(text_ + position, program_.literals.data() + instruction.a, instruction.b) !=
                    0)
                    break;
                position += instruction.b;
                ++at;
                continue;
            case Op::set:
                if (position == end_ || !program_.inSet(instruction.a, text_[position])) break;
                ++position;
                ++at;
                continue;
            case Op::jump:
                at = instruction.b;
                continue;
            case Op::split:
                if (!split(instruction, at, position)) break;
                continue;
            case Op::splitLazy:
                if (!splitLazy(instruction, at, position)) break;
                continue;
            case Op::saveBegin:
                setCapture(2 * instruction.a, position);
                ++at;
                continue;
            case Op::saveEnd:
                setCapture(2 * instruction.a + 1, position);
                ++at;
                continue;
            case Op::loopPossessive:
                if (!loopPossessive(program_.loops[instruction.a], position)) break;
                ++at;
                continue;
            case Op::loopGreedy:
                if (!loopGreedy(at, position)) break;
                ++at;
                continue;
            case Op::loopLazy:
                if (!loopLazy(at, position)) break;
                ++at;
                continue;
            case Op::loopCapture:
                if (!loopCapture(at, position)) break;
                ++at;
                continue;
            case Op::guardedLoop:
                guardedLoop(at, position);
                continue;
            case Op::guardedLoopLazy:
                push(Kind::guardedRound, at, position);
                at = instruction.b;
                continue;
            case Op::lineBegin:
                if (!atLineBegin(position)) break;
                ++at;
                continue;
            case Op::lineEnd:
                if (!atLineEnd(position)) break;
                ++at;
                continue;
            case Op::wordBoundary:
                if (!atWordBoundary(position)) break;
                ++at;
                continue;
            case Op::notWordBoundary:
                if (atWordBoundary(position)) break;
                ++at;
                continue;
            case Op::look:
            case Op::negativeLook:
                beginLook(at, position);
                ++at;
                continue;
            case Op::lookAccept:
                if (!acceptLook(at, position)) break;
                continue;
            case Op::backReference:
                if (!backReference(instruction.a, position)) break;
                ++at;
                continue;
            case Op::accept:
                if (!acceptable(position)) break;
                matchEnd_ = position;
                return true;
        }
        if (!backtrack(at, position)) return false;
    }
}

// Takes back what was done last until a way not yet tried turns up.
bool Matcher::backtrack(std::uint32_t& at, Position& position) {
    while (top_ > 0) {
        const Pending entry = stack_[--top_];
        charge(1);
        switch (entry.kind()) {
            case Kind::branch:
                at = entry.where();
                position = entry.a;
                return true;
            case Kind::capture:
                captures_[entry.where()] = entry.a;
                break;
            case Kind::guard:
                guards_[entry.where()] = entry.a;
                break;
            case Kind::loopBack:
                if (!giveBack(entry, position)) break;
                at = entry.where() + 1;
                return true;
            case Kind::loopForward:
                if (!program_.inSet(program_.loops[program_.code[entry.where()].a].set, byteAt(entry.a)))
                    break;
                if (!takeLazily(entry.where(), entry.a + 1, entry.b, position)) break;
                at = entry.where() + 1;
                return true;
            case Kind::guardedRound:
                at = entry.where();
                position = entry.a;
                if (!guardedRound(at, position)) break;
                return true;
            case Kind::look:
                leaveLook(entry);
                if (program_.code[entry.where()].op == Op::look) break;
                at = program_.code[entry.where()].a;
                position = entry.a;
                return true;
        }
    }
    return false;
}

void Matcher::grow() {
    if (capacity_ >= maximumEntries_)
        throw BudgetExceeded("the pattern is too complex for this subject: out of working memory");
    memory_.stack.resize(std::min(maximumEntries_, std::max<std::size_t>(64, 2 * memory_.stack.size())));
    stack_ = memory_.stack.data();
    capacity_ = memory_.stack.size();
}

void Matcher::outOfSteps() {
    throw BudgetExceeded("the pattern is too complex for this subject: too many steps");
}

bool Matcher::split(const Instruction& instruction, std::uint32_t& at, Position position) {
    const bool second = worthTrying(instruction.d, position);
    if (!worthTrying(instruction.c, position)) {
        at = instruction.b;
        return second;
    }
    if (second) push(Kind::branch, instruction.b, position);
    at = instruction.a;
    return true;
}

bool Matcher::splitLazy(const Instruction& instruction, std::uint32_t& at, Position position) {
    const bool round = worthTrying(instruction.c, position);
    if (!worthTrying(instruction.d, position)) {
        at = instruction.a;
        return round;
    }
    if (round) push(Kind::branch, instruction.a, position);
    at = instruction.b;
    return true;
}

void Matcher::setCapture(std::uint32_t slot, Position value) {
    // With nothing pending a failure ends the attempt, and the next one starts afresh.
    if (top_ > 0) push(Kind::capture, slot, captures_[slot]);
    captures_[slot] = value;
}

// Where the bytes of the loop's set end, at most `limit`.
Position Matcher::runEnd(const Loop& loop, Position position, Position limit) const {
    switch (loop.run) {
        case Loop::Run::everything:
            return limit;
        case Loop::Run::allButOne:
            return findByte(text_, loop.stops[0], position, limit);
        case Loop::Run::allButTwo:
            // In blocks, since the far stop must not be looked for beyond the near one.
            while (position < limit) {
                const Position block = limit - position > 256 ? position + 256 : limit;
                const Position near = findByte(text_, loop.stops[0], position, block);
                position = findByte(text_, loop.stops[1], position, near);
                if (position < block) return position;
            }
            return limit;
        case Loop::Run::table:
            break;
    }
    const std::uint8_t* table = program_.tables[loop.set >> 3].data();
    const unsigned mask = 1u << (loop.set & 7);
    while (position < limit && (table[text_[position]] & mask) != 0) ++position;
    return position;
}

// As many bytes as the loop may have, if they are enough.
bool Matcher::takeRun(const Loop& loop, Position& position) {
    const Position begin = position;
    const Position limit = end_ - position > loop.maximum ? position + loop.maximum : end_;
    position = runEnd(loop, position, limit);
    charge((position - begin) / bytesPerStep);
    return position - begin >= loop.minimum;
}

bool Matcher::lastWorthTrying(const Loop& loop, Position lowest, Position& position) const {
    if (loop.next == noFilter) return true;
    while (!worthTrying(loop.next, position)) {
        if (position == lowest) return false;
        --position;
    }
    return true;
}

bool Matcher::loopPossessive(const Loop& loop, Position& position) {
    return takeRun(loop, position) && worthTrying(loop.next, position);
}

bool Matcher::loopGreedy(std::uint32_t at, Position& position) {
    const Loop& loop = program_.loops[program_.code[at].a];
    const Position lowest = position + loop.minimum;
    if (!takeRun(loop, position)) return false;
    const Position taken = position;
    if (!lastWorthTrying(loop, lowest, position)) {
        charge((taken - lowest) / bytesPerStep);
        return false;
    }
    charge((taken - position) / bytesPerStep);
    if (position > lowest) push(Kind::loopBack, at, lowest, position);
    return true;
}

bool Matcher::loopLazy(std::uint32_t at, Position& position) {
    const Loop& loop = program_.loops[program_.code[at].a];
    const Position highest = end_ - position > loop.maximum ? position + loop.maximum : end_;
    if (highest - position < loop.minimum) return false;
    const Position lowest = position + loop.minimum;
    if (runEnd(loop, position, lowest) != lowest) return false;
    return takeLazily(at, lowest, highest, position);
}

// From `position` on, all before it taken: the nearest place where going on is worth it.
bool Matcher::takeLazily(std::uint32_t at, Position position, Position highest, Position& reached) {
    const Loop& loop = program_.loops[program_.code[at].a];
    const Position begin = position;
    bool found = worthTrying(loop.next, position);
    while (!found && position < highest && program_.inSet(loop.set, text_[position]))
        found = worthTrying(loop.next, ++position);
    charge((position - begin) / bytesPerStep);
    if (!found) return false;
    if (position < highest) push(Kind::loopForward, at, position, highest);
    reached = position;
    return true;
}

bool Matcher::loopCapture(std::uint32_t at, Position& position) {
    const Loop& loop = program_.loops[program_.code[at].a];
    const Position start = position;
    const Position lowest = position + loop.minimum;
    if (!takeRun(loop, position)) return false;
    const Position taken = position;
    if (!lastWorthTrying(loop, lowest, position)) {
        charge((taken - lowest) / bytesPerStep);
        return false;
    }
    charge((taken - position) / bytesPerStep);
    if (position == start) return true;
    push(Kind::capture, 2 * loop.group, captures_[2 * loop.group]);
    push(Kind::capture, 2 * loop.group + 1, captures_[2 * loop.group + 1]);
    captureRound(loop, start, position);
    if (position > lowest) push(Kind::loopBack, at, lowest, position);
    return true;
}

// What the group holds after the round that ended at `position`. After no round at all it is what it was
// before the loop, which the two topmost entries know.
void Matcher::captureRound(const Loop& loop, Position start, Position position) {
    if (position > start) {
        captures_[2 * loop.group] = position - 1;
        captures_[2 * loop.group + 1] = position;
    } else {
        captures_[2 * loop.group] = stack_[top_ - 2].a;
        captures_[2 * loop.group + 1] = stack_[top_ - 1].a;
    }
}

bool Matcher::giveBack(Pending entry, Position& position) {
    const Loop& loop = program_.loops[program_.code[entry.where()].a];
    position = entry.b - 1;
    const bool found = lastWorthTrying(loop, entry.a, position);
    charge((entry.b - position) / bytesPerStep);
    if (!found) return false;
    if (loop.group != 0) captureRound(loop, entry.a - loop.minimum, position);
    if (position > entry.a) push(Kind::loopBack, entry.where(), entry.a, position);
    return true;
}

void Matcher::guardedLoop(std::uint32_t& at, Position position) {
    const Instruction& instruction = program_.code[at];
    push(Kind::branch, instruction.b, position);
    if (guardedRound(at, position)) return;
    --top_;
    at = instruction.b;
}

// Begins a round, unless two rounds began here already: then a third can bring nothing new.
bool Matcher::guardedRound(std::uint32_t& at, Position position) {
    const Instruction& instruction = program_.code[at];
    Position& guard = guards_[instruction.c];
    if (guard == guardOf(position, true)) return false;
    push(Kind::guard, instruction.c, guard);
    guard = guardOf(position, guard == guardOf(position, false));
    at = instruction.a;
    return true;
}

bool Matcher::atLineBegin(Position position) const {
    return position == begin_ && !seesPrevious_ && !has(flags_, MatchFlags::notLineBegin);
}

bool Matcher::atLineEnd(Position position) const {
    return position == end_ && !has(flags_, MatchFlags::notLineEnd);
}

bool Matcher::isWord(Position position) const {
    return wordBytes().contains(byteAt(position));
}

bool Matcher::atWordBoundary(Position position) const {
    const bool first = position == begin_ && !(look_ != noPosition && seesPrevious_);
    if (first && has(flags_, MatchFlags::notWordBegin)) return false;
    if (position == end_ && has(flags_, MatchFlags::notWordEnd)) return false;
    const bool before = (position != begin_ || seesPrevious_) && isWord(position - 1);
    const bool after = position != end_ && isWord(position);
    return before != after;
}

bool Matcher::backReference(std::uint32_t group, Position& position) {
    const Position from = captures_[2 * group];
    const Position to = captures_[2 * group + 1];
    if (to == noPosition || end_ - position < to - from) return false;
    const Position length = to - from;
    charge(length / bytesPerStep);
    if (program_.ignoreCase) {
        for (Position i = 0; i < length; ++i)
            if (lowerCase(text_[from + i]) != lowerCase(text_[position + i])) return false;
    } else if (std::memcmp(text_ + from, text_ + position, length) != 0) {
        return false;
    }
    position += length;
    return true;
}

// A lookahead is a search of its own that begins here. What its groups captured stays when it succeeds, even
// after the way on from it has failed; so that is taken back only when the lookahead itself fails.
void Matcher::beginLook(std::uint32_t at, Position position) {
    const Instruction& instruction = program_.code[at];
    push(Kind::look, at, position, look_);
    look_ = static_cast<std::uint32_t>(top_ - 1);
    begin_ = position;
    for (std::uint32_t slot = 2 * instruction.b; slot < 2 * instruction.c; ++slot)
        push(Kind::capture, slot, captures_[slot]);
}

void Matcher::leaveLook(const Pending& entry) {
    look_ = entry.b;
    begin_ = look_ == noPosition ? start_ : stack_[look_].a;
}

bool Matcher::acceptLook(std::uint32_t& at, Position& position) {
    if (!acceptable(position)) return false;
    charge((top_ - look_) / bytesPerStep);
    while (top_ > look_ + std::size_t{1}) {
        const Pending& entry = stack_[--top_];
        if (entry.kind() == Kind::guard) guards_[entry.where()] = entry.a;
    }
    const Pending entry = stack_[--top_];
    leaveLook(entry);
    at = program_.code[entry.where()].a;
    position = entry.a;
    return program_.code[entry.where()].op == Op::look;
}

void Matcher::report(Captures& out, Position start, Position end) const {
    out.resize(std::size_t{program_.groupCount} + 1);
    out[0] = {start, end, true};
    for (std::size_t group = 1; group < out.size(); ++group) {
        out[group] = {};
        if (captures_[2 * group + 1] != noPosition)
            out[group] = {captures_[2 * group], captures_[2 * group + 1], true};
    }
}

}  // namespace kelmora::regex
