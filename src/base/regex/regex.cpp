#include "base/regex/regex.h"

#include <utility>

#include "base/regex/matcher.h"
#include "base/regex/program.h"
#include "base/regex/syntax_tree.h"

namespace kelmora::regex {

Pattern Pattern::compile(std::string_view source, bool ignoreCase) {
    return Pattern(std::make_shared<const Program>(compileTree(parse(source, ignoreCase), ignoreCase)));
}

std::size_t Pattern::captureCount() const {
    return program_->groupCount;
}

bool Pattern::search(std::string_view subject, std::size_t from, Captures& out, Scratch& scratch,
                     MatchFlags flags, const Limits& limits) const {
    if (subject.size() > maximumSubject) throw BudgetExceeded("the subject is too long: more than 2 GiB");
    if (!scratch.memory_) scratch.memory_ = std::make_unique<SearchMemory>();
    Matcher matcher(*program_, subject, *scratch.memory_, flags, limits);
    if (matcher.search(from, out)) return true;
    out.clear();
    return false;
}

bool Pattern::search(std::string_view subject, std::size_t from, Captures& out, MatchFlags flags) const {
    Scratch scratch;
    return search(subject, from, out, scratch, flags);
}

Scratch::Scratch() = default;
Scratch::~Scratch() = default;
Scratch::Scratch(Scratch&&) noexcept = default;
Scratch& Scratch::operator=(Scratch&&) noexcept = default;

void Scratch::release() {
    memory_.reset();
}

MatchIterator::MatchIterator(Pattern pattern, std::string_view subject, Scratch& scratch, MatchFlags flags,
                             const Limits& limits)
    : pattern_(std::move(pattern)), subject_(subject), scratch_(&scratch), flags_(flags), limits_(limits) {}

bool MatchIterator::next() {
    if (finished_) return false;
    std::size_t from = 0;
    if (started_) {
        const Capture previous = match();
        from = previous.end;
        if (previous.length() == 0) {
            if (from == subject_.size()) return !(finished_ = true);
            if (findAfterEmpty(from)) return true;
            ++from;
        }
        sawPrevious_ = true;
    }
    started_ = true;
    finished_ = !pattern_.search(subject_, from, captures_, *scratch_, flags_, limits_);
    return !finished_;
}

// A match right behind an empty one, but not empty itself. Before the second search of all it still sees its
// own place as the start of the subject.
bool MatchIterator::findAfterEmpty(std::size_t start) {
    MatchFlags flags = flags_ | MatchFlags::notNull | MatchFlags::continuous;
    if (!sawPrevious_) flags = flags | MatchFlags::ignorePrevious;
    return pattern_.search(subject_, start, captures_, *scratch_, flags, limits_);
}

}  // namespace kelmora::regex
