#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelmora {

enum class FormatFault {
    Incomplete,       // the text ends inside a specifier
    Unsupported,      // a letter that converts nothing
    MissingArgument,  // fewer arguments than specifiers
    TooLarge,         // the result would be longer than maximumTextSize
    Unprintable       // the C library refused
};

// Thrown by formatText; each language has its own words for it.
struct FormatFailure {
    FormatFault fault;
    char conversion = '\0';
};

// The values of one call, in the order of their use. Those who convert raise their language's own errors.
class FormatArguments {
public:
    virtual ~FormatArguments() = default;
    // Goes on to the next value; false when there is none.
    virtual bool next() = 0;
    virtual std::int64_t integer() = 0;
    // For %x, %X, %o and %u: a language of 32-bit integers gives 32 bits.
    virtual std::uint64_t bits() = 0;
    virtual double number() = 0;
    virtual std::string text() = 0;
};

// Conversions d i x X o u c s q e E f F g G and %%, with the flags "-+ #0", width and precision. Length
// modifiers are read and mean nothing.
std::string formatText(std::string_view format, FormatArguments& arguments);

// In double quotes, with backslash forms for quotes, backslashes, line feeds, carriage returns and tabs.
void appendQuoted(std::string& out, std::string_view text);

}  // namespace kelmora
