#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace kelmora {

// A statement on the way to a failure, in any of the languages.
struct CallPlace {
    std::string function;     // that it stands in; empty where that has no name
    std::string path;         // empty for text that came from no file
    std::uint32_t line = 0;   // from 1
    std::string statement;    // empty where the source is not known
    std::uint32_t times = 1;  // for a call that led to itself
};

// What failed, and the calls that led there, the innermost first.
using CallTrail = std::vector<CallPlace>;

constexpr std::size_t maximumTrailPlaces = 16;  // of one language between two crossings
constexpr std::size_t maximumTrailStatement = 400;
constexpr std::size_t maximumTrailName = 100;

// A failure that comes from another language, or out of a protected call, with its way until here.
class TracedError : public std::runtime_error {
public:
    TracedError(const std::string& message, CallTrail trail)
        : std::runtime_error(message), trail_(std::move(trail)) {}

    const CallTrail& trail() const { return trail_; }

private:
    CallTrail trail_;
};

}  // namespace kelmora
