#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace kelmora::guest {

// Where something stands in a guest's source. Lines and columns count from 1; column 0 is unknown.
struct Location {
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

// "chunk:line: message", with ":column" behind the line where one is known.
std::string formatError(std::string_view chunkName, Location location, std::string_view message);

// A failure of a guest's program, with its place in the text already.
class GuestError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The error of a front end: it ends the reading of a source.
[[noreturn]] void failParse(std::string_view chunkName, Location location, std::string_view message);

}  // namespace kelmora::guest
