#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// Regular expressions over bytes: the ECMAScript grammar with the C++ standard library's additions for
// brackets, in the "C" locale. Matching is iterative; neither pattern nor subject can exhaust the native
// stack.
namespace kelmora::regex {

struct Program;
struct SearchMemory;
class Scratch;

// The pattern is malformed or too large. The text says what was found and what was expected.
class SyntaxError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// A search was given up because it went past its limits; nothing is known about whether it would match.
class BudgetExceeded : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Byte offsets into the subject. Both are 0 where the group took no part.
struct Capture {
    std::size_t begin = 0;
    std::size_t end = 0;
    bool tookPart = false;

    std::size_t length() const { return end - begin; }
    std::string_view in(std::string_view subject) const { return subject.substr(begin, end - begin); }
    friend bool operator==(const Capture&, const Capture&) = default;
};

// Index 0 is the whole match, 1 and up are the groups.
using Captures = std::vector<Capture>;

enum class MatchFlags : std::uint8_t {
    none = 0,
    // The "begin" flags count only where no byte before the start is seen.
    notLineBegin = 1,    // ^ does not match at the start of the search
    notLineEnd = 2,      // $ does not match at the end of the subject
    notWordBegin = 4,    // \b does not match at the start of the search
    notWordEnd = 8,      // \b does not match at the end of the subject
    notNull = 16,        // an empty match is no match
    continuous = 32,     // only at `from` itself
    ignorePrevious = 64  // ^ and \b see `from` as the start of the subject
};
constexpr MatchFlags operator|(MatchFlags a, MatchFlags b) {
    return static_cast<MatchFlags>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
constexpr MatchFlags without(MatchFlags flags, MatchFlags removed) {
    return static_cast<MatchFlags>(static_cast<unsigned>(flags) & ~static_cast<unsigned>(removed));
}
constexpr bool has(MatchFlags flags, MatchFlags flag) {
    return (static_cast<unsigned>(flags) & static_cast<unsigned>(flag)) != 0;
}

// What one search may spend before BudgetExceeded.
struct Limits {
    std::uint64_t steps = 10'000'000;
    std::uint64_t stepsPerByte = 16;  // of subject, on top
    std::size_t stackBytes = std::size_t{64} << 20;
};

constexpr std::size_t maximumNesting = 1000;          // groups and lookaheads within each other
constexpr std::size_t maximumStates = 100'000;        // after the expansion of counted repeats
constexpr std::size_t maximumSubject = 0x7FFF'FFF0u;  // bytes

// A compiled pattern. Immutable, cheap to copy, safe to share between threads.
class Pattern {
public:
    // Throws SyntaxError.
    static Pattern compile(std::string_view source, bool ignoreCase = false);

    // Groups; the whole match is not counted.
    std::size_t captureCount() const;

    // The leftmost match that begins at or after `from`. With `from` above 0 the bytes before it are seen by
    // ^ and \b unless the flags say otherwise. When nothing matches, or `from` is past the end, the answer is
    // false and `out` is empty. Throws BudgetExceeded.
    bool search(std::string_view subject, std::size_t from, Captures& out, Scratch& scratch,
                MatchFlags flags = MatchFlags::none, const Limits& limits = {}) const;

    // The same with working memory of its own. Prefer the other for repeated searches.
    bool search(std::string_view subject, std::size_t from, Captures& out,
                MatchFlags flags = MatchFlags::none) const;

private:
    explicit Pattern(std::shared_ptr<const Program> program) : program_(std::move(program)) {}

    std::shared_ptr<const Program> program_;
};

// Working memory of a search. Kept between searches, of any patterns, it lets them run without allocating.
// One search at a time.
class Scratch {
public:
    Scratch();
    ~Scratch();
    Scratch(Scratch&&) noexcept;
    Scratch& operator=(Scratch&&) noexcept;

    // Gives the memory back.
    void release();

private:
    friend class Pattern;
    std::unique_ptr<SearchMemory> memory_;
};

// Steps through all matches front to back. After an empty match a non-empty one is tried at the same place,
// then the search goes on one byte further. Subject and scratch are borrowed.
class MatchIterator {
public:
    MatchIterator(Pattern pattern, std::string_view subject, Scratch& scratch,
                  MatchFlags flags = MatchFlags::none, const Limits& limits = {});

    // Moves to the next match, the first one at the first call. False when there are no more.
    bool next();

    // Of the match that next() found.
    const Captures& captures() const { return captures_; }
    const Capture& match() const { return captures_[0]; }

private:
    bool findAfterEmpty(std::size_t start);

    Pattern pattern_;
    std::string_view subject_;
    Scratch* scratch_;
    MatchFlags flags_;
    Limits limits_;
    Captures captures_;
    bool started_ = false;
    bool finished_ = false;
    bool sawPrevious_ = false;  // a step has gone past the first match
};

}  // namespace kelmora::regex
