#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/regex/byte_set.h"

namespace kelmora::regex {

// The text of a pattern and the place reached in it.
class Source {
public:
    explicit Source(std::string_view text) : text_(text) {}

    bool atEnd() const { return position_ == text_.size(); }
    // At the end neither may be called.
    unsigned peek() const { return static_cast<unsigned char>(text_[position_]); }
    unsigned take() { return static_cast<unsigned char>(text_[position_++]); }
    bool takeIf(char wanted) {
        if (atEnd() || text_[position_] != wanted) return false;
        ++position_;
        return true;
    }
    // Everything up to the closing pair `mark` "]", and that pair.
    std::string_view takeName(char mark);
    // Decimal digits; at least one must be there. Fails above 2^31 - 1.
    std::uint32_t takeNumber();
    // What stands behind "\x" or "\u"; the lowest byte of the value.
    unsigned takeHexadecimal(int digits);
    // A control letter after "\c" stands for itself.
    unsigned takeControl();

    // Throws SyntaxError naming the place and what was found there.
    [[noreturn]] void fail(const std::string& expected) const;

private:
    std::string_view text_;
    std::size_t position_ = 0;
};

// Values of \0 \b \f \n \r \t \v, or -1.
int controlEscape(unsigned letter);

// Reads a bracket expression whose "[" is taken, its "]" included.
ByteSet parseBracket(Source& source, bool ignoreCase);

// Sets of \d \s \w and their upper case.
ByteSet escapedClass(unsigned letter);

// The byte alone, or in both cases.
ByteSet singleByte(unsigned byte, bool ignoreCase);

}  // namespace kelmora::regex
