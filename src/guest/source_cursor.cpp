#include "guest/source_cursor.h"

namespace kelmora::guest {
namespace {

char escapedByte(char letter) {
    switch (letter) {
        case '0':
            return '\0';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        default:
            return letter;
    }
}

}  // namespace

char SourceCursor::take() {
    const char c = source_[at_++];
    if (c == '\n') {
        ++line_;
        column_ = 1;
    } else {
        ++column_;
    }
    return c;
}

bool SourceCursor::take(char wanted) {
    if (atEnd() || source_[at_] != wanted) return false;
    take();
    return true;
}

std::string SourceCursor::readString(char quote) {
    const Location start = location();
    std::string text;
    for (;;) {
        if (atEnd()) fail(start, "unterminated string literal");
        const char c = take();
        if (c == quote) return text;
        if (c != '\\') {
            text += c;
            continue;
        }
        if (atEnd()) fail(location(), "unterminated string escape");
        text += escapedByte(take());
    }
}

}  // namespace kelmora::guest
