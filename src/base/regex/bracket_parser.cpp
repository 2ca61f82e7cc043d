#include "base/regex/bracket_parser.h"

#include "base/regex/byte_classes.h"
#include "base/regex/regex.h"

namespace kelmora::regex {
namespace {

int hexadecimalValue(unsigned byte) {
    if (byte >= '0' && byte <= '9') return static_cast<int>(byte - '0');
    const unsigned lower = lowerCase(byte);
    return lower >= 'a' && lower <= 'f' ? static_cast<int>(lower - 'a') + 10 : -1;
}

bool isDigit(unsigned byte) {
    return byte >= '0' && byte <= '9';
}

class BracketParser {
public:
    BracketParser(Source& source, bool ignoreCase) : source_(source), ignoreCase_(ignoreCase) {}

    ByteSet parse() {
        const bool negated = source_.takeIf('^');
        for (;;) {
            read();
            if (item_.kind == Kind::close) break;
            if (item_.kind == Kind::dash)
                addDash();
            else
                add(item_);
            if (closed_) break;
        }
        flush();
        if (negated) set_.invert();
        return set_;
    }

private:
    enum class Kind { none, byte, namedByte, members, dash, close };
    struct Item {
        Kind kind = Kind::none;
        unsigned byte = 0;
        ByteSet members;
    };

    void add(const Item& item) {
        flush();
        previous_ = item;
        if (previous_.kind == Kind::namedByte) previous_.kind = Kind::byte;
        if (previous_.kind == Kind::members) set_ |= previous_.members;
    }

    void flush() {
        if (previous_.kind == Kind::byte) set_ |= singleByte(previous_.byte, ignoreCase_);
    }

    void addDash() {
        const Item dash{Kind::byte, '-', {}};
        if (previous_.kind == Kind::none) {
            if (source_.atEnd()) source_.fail("']'");
            // A dash right after a range or at the front is itself, but so is one right before the end.
            add(dash);
            return;
        }
        read();
        if (item_.kind == Kind::close) {
            add(dash);
            closed_ = true;
            return;
        }
        if (previous_.kind == Kind::members) source_.fail("a single character before '-' in a range");
        if (item_.kind != Kind::byte && item_.kind != Kind::dash)
            source_.fail("a single character after '-' in a range");
        addRange(previous_.byte, item_.kind == Kind::dash ? '-' : item_.byte);
        previous_ = {};
    }

    // Bounds order as signed chars: a range may run from 0x80 over 0xFF to 0x7F.
    void addRange(unsigned first, unsigned last) {
        const int low = static_cast<signed char>(first);
        const int high = static_cast<signed char>(last);
        if (low > high) source_.fail("a range whose ends are in order");
        const auto inside = [&](unsigned byte) {
            const int value = static_cast<signed char>(byte);
            return low <= value && value <= high;
        };
        for (unsigned byte = 0; byte < 256; ++byte) {
            const bool member =
                ignoreCase_ ? inside(lowerCase(byte)) || inside(upperCase(byte)) : inside(byte);
            if (member) set_.add(byte);
        }
    }

    void read() {
        if (source_.atEnd()) source_.fail("']'");
        const unsigned c = source_.take();
        if (c == ']')
            item_ = {Kind::close, 0, {}};
        else if (c == '-')
            item_ = {Kind::dash, 0, {}};
        else if (c == '\\')
            readEscape();
        else if (c == '[')
            readName();
        else
            item_ = {Kind::byte, c, {}};
    }

    void readEscape() {
        if (source_.atEnd()) source_.fail("a character after '\\'");
        const unsigned c = source_.peek();
        if (isDigit(c) && c != '0') source_.fail("no back-reference in a bracket expression");
        if (c == 'B') source_.fail("no word boundary in a bracket expression");
        source_.take();
        if (const int value = controlEscape(c); value >= 0)
            item_ = {Kind::byte, static_cast<unsigned>(value), {}};
        else if (c == 'x' || c == 'u')
            item_ = {Kind::byte, source_.takeHexadecimal(c == 'x' ? 2 : 4), {}};
        else if (c == 'c')
            item_ = {Kind::byte, source_.takeControl(), {}};
        else if (std::string_view("dDsSwW").find(static_cast<char>(c)) != std::string_view::npos)
            item_ = {Kind::members, 0, escapedClass(c)};
        else
            item_ = {Kind::byte, c, {}};
    }

    void readName() {
        if (source_.atEnd()) source_.fail("']'");
        if (source_.takeIf('.')) {
            item_ = {Kind::namedByte, collatingByte('.'), {}};
        } else if (source_.takeIf('=')) {
            const unsigned wanted = lowerCase(collatingByte('='));
            item_ = {Kind::members, 0, singleByte(wanted, true)};
        } else if (source_.takeIf(':')) {
            const auto named = classNamed(source_.takeName(':'), ignoreCase_);
            if (!named) source_.fail("the name of a character class");
            item_ = {Kind::members, 0, *named};
        } else {
            item_ = {Kind::byte, '[', {}};
        }
    }

    unsigned collatingByte(char mark) {
        const auto byte = byteNamed(source_.takeName(mark));
        if (!byte) source_.fail("the name of a collating element");
        return *byte;
    }

    Source& source_;
    bool ignoreCase_;
    ByteSet set_;
    Item item_;
    Item previous_;
    bool closed_ = false;
};

}  // namespace

std::string_view Source::takeName(char mark) {
    const std::size_t end = text_.find(mark, position_);
    if (end == std::string_view::npos || end + 1 >= text_.size() || text_[end + 1] != ']')
        fail(std::string("'") + mark + "]'");
    const std::string_view name = text_.substr(position_, end - position_);
    position_ = end + 2;
    return name;
}

std::uint32_t Source::takeNumber() {
    if (atEnd() || !isDigit(peek())) fail("a number");
    std::uint64_t value = 0;
    while (!atEnd() && isDigit(peek())) {
        value = value * 10 + (peek() - '0');
        if (value > 0x7FFF'FFFF) fail("a number below 2147483648");
        ++position_;
    }
    return static_cast<std::uint32_t>(value);
}

unsigned Source::takeHexadecimal(int digits) {
    unsigned value = 0;
    for (int i = 0; i < digits; ++i) {
        const int digit = atEnd() ? -1 : hexadecimalValue(peek());
        if (digit < 0) fail(std::to_string(digits) + " hexadecimal digits");
        value = value * 16 + static_cast<unsigned>(digit);
        ++position_;
    }
    return value & 0xFF;
}

unsigned Source::takeControl() {
    if (atEnd()) fail("a letter after '\\c'");
    return take();
}

void Source::fail(const std::string& expected) const {
    std::string found = "the end of the pattern";
    if (!atEnd()) found = std::string("'") + text_[position_] + "'";
    throw SyntaxError("expected " + expected + " at offset " + std::to_string(position_) + ", found " +
                      found);
}

int controlEscape(unsigned letter) {
    switch (letter) {
        case '0':
            return 0;
        case 'b':
            return '\b';
        case 'f':
            return '\f';
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        case 'v':
            return '\v';
        default:
            return -1;
    }
}

ByteSet parseBracket(Source& source, bool ignoreCase) {
    return BracketParser(source, ignoreCase).parse();
}

ByteSet escapedClass(unsigned letter) {
    const unsigned lower = lowerCase(letter);
    const char name = static_cast<char>(lower);
    ByteSet set = *classNamed(std::string_view(&name, 1), false);
    if (lower != letter) set.invert();
    return set;
}

ByteSet singleByte(unsigned byte, bool ignoreCase) {
    ByteSet set;
    set.add(byte);
    if (ignoreCase) {
        set.add(lowerCase(byte));
        set.add(upperCase(byte));
    }
    return set;
}

}  // namespace kelmora::regex
