#pragma once

#include <string>
#include <string_view>

#include "guest/location_error.h"

namespace kelmora::guest {

// Reads a guest's source byte by byte and knows where it is: a line feed goes to the next line at column 1,
// every other byte to the next column. The source and the chunk's name are borrowed.
class SourceCursor {
public:
    SourceCursor(std::string_view source, std::string_view chunkName)
        : source_(source), chunkName_(chunkName) {}

    bool atEnd() const { return at_ == source_.size(); }
    // The byte `ahead` places on, or 0 behind the end.
    char peek(std::size_t ahead = 0) const {
        return ahead < source_.size() - at_ ? source_[at_ + ahead] : '\0';
    }
    char take();
    // Takes the byte when it is this one.
    bool take(char wanted);

    Location location() const { return {line_, column_}; }
    std::string_view chunkName() const { return chunkName_; }
    [[noreturn]] void fail(Location location, std::string_view message) const {
        failParse(chunkName_, location, message);
    }

    // Reads behind the opening quote, up to and with the closing one. \0 \n \r \t stand for their bytes, any
    // other byte behind a backslash for itself.
    std::string readString(char quote);

private:
    std::string_view source_;
    std::string_view chunkName_;
    std::size_t at_ = 0;
    std::uint32_t line_ = 1;
    std::uint32_t column_ = 1;
};

inline bool isNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
}
inline bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
inline bool isNamePart(char c) {
    return isNameStart(c) || isDigit(c);
}

}  // namespace kelmora::guest
