#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelmora {

struct FormatFault {
    std::uint32_t line = 0;  // from 0
    std::string message;
};

struct FormattedSource {
    std::string text;                  // the source as it was when there is a fault
    std::optional<FormatFault> fault;  // why it could not be formatted
};

// Sets the indentation of a VesperScript source, four blanks for each block and bracket that is open, and the
// blanks between its tokens. Strings, comments, line ends and empty lines stay, and so does the program that
// the source compiles to. A source with a string, a bracket or a block without its end is left alone.
FormattedSource formatSource(std::string_view source);

}  // namespace kelmora
