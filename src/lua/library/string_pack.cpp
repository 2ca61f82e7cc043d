#include <bit>
#include <cstdint>

#include "lua/library/arguments.h"
#include "lua/library/string_library.h"

namespace vesper::lua {
namespace {

enum class ItemKind : std::uint8_t {
    Signed,
    Unsigned,
    Float,
    CountedText,
    ZeroText,
    Padding,
    FixedText,
    End
};

struct Item {
    ItemKind kind = ItemKind::End;
    std::size_t size = 0;  // in bytes; of the count in front of a counted text
};

// Reads a format: < and = little-endian, > big-endian; b h i l j and upper case for unsigned, T, with a size
// of 1 to 8 behind i, I and s; f, d and n; z; x; c and a length. There is no alignment.
class FormatReader {
public:
    FormatReader(const NativeCall& call, std::string_view format) : call_(call), format_(format) {}

    bool isBigEndian() const { return isBigEndian_; }

    Item next() {
        while (at_ < format_.size()) {
            const char option = format_[at_++];
            switch (option) {
                case ' ':
                    continue;
                case '<':
                case '=':
                    isBigEndian_ = false;
                    continue;
                case '>':
                    isBigEndian_ = true;
                    continue;
                case 's':
                    return {ItemKind::CountedText, readSize(8)};
                case 'z':
                    return {ItemKind::ZeroText, 0};
                case 'x':
                    return {ItemKind::Padding, 1};
                case 'c':
                    return {ItemKind::FixedText, readLength()};
                case 'f':
                    return {ItemKind::Float, 4};
                case 'd':
                case 'n':
                    return {ItemKind::Float, 8};
                default:
                    return integerItem(option);
            }
        }
        return {};
    }

private:
    Item integerItem(char option) {
        const bool isUnsigned = (option >= 'A' && option <= 'Z');
        const ItemKind kind = isUnsigned ? ItemKind::Unsigned : ItemKind::Signed;
        switch (option | 0x20) {
            case 'b':
                return {kind, 1};
            case 'h':
                return {kind, 2};
            case 'i':
                return {kind, readSize(4)};
            case 'l':
            case 'j':
                return {kind, 8};
            case 't':
                if (isUnsigned) return {kind, 8};
                break;
            default:
                break;
        }
        failCall(call_, std::string("invalid format option '") + option + "'");
    }
    bool readDigits(std::size_t& value) {
        const std::size_t start = at_;
        value = 0;
        while (at_ < format_.size() && format_[at_] >= '0' && format_[at_] <= '9' && value < 100'000'000)
            value = value * 10 + static_cast<std::size_t>(format_[at_++] - '0');
        return at_ > start;
    }
    std::size_t readSize(std::size_t otherwise) {
        std::size_t size = 0;
        if (!readDigits(size)) return otherwise;
        if (size < 1 || size > 8) failCall(call_, "the size of an integer is out of range");
        return size;
    }
    std::size_t readLength() {
        std::size_t length = 0;
        if (!readDigits(length)) failCall(call_, "a length is missing behind 'c'");
        return length;
    }

    const NativeCall& call_;
    std::string_view format_;
    std::size_t at_ = 0;
    bool isBigEndian_ = false;
};

void appendBytes(std::string& out, std::uint64_t bits, std::size_t size, bool isBigEndian) {
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t shift = 8 * (isBigEndian ? size - 1 - i : i);
        out += static_cast<char>(bits >> shift);
    }
}

std::uint64_t bytesAt(std::string_view text, std::size_t at, std::size_t size, bool isBigEndian) {
    std::uint64_t bits = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t place = at + (isBigEndian ? i : size - 1 - i);
        bits = bits << 8 | static_cast<unsigned char>(text[place]);
    }
    return bits;
}

std::uint64_t integerBits(const NativeCall& call, std::size_t position, const Item& item) {
    const std::int64_t value = requireInteger(call, position);
    if (item.size < 8) {
        const std::int64_t bound = std::int64_t{1}
                                   << (8 * item.size - (item.kind == ItemKind::Signed ? 1 : 0));
        if (value >= bound || value < (item.kind == ItemKind::Signed ? -bound : 0))
            failCall(call, "an integer does not fit its size");
    }
    return static_cast<std::uint64_t>(value);
}

std::uint64_t floatBits(double value, std::size_t size) {
    return size == 4 ? std::bit_cast<std::uint32_t>(static_cast<float>(value))
                     : std::bit_cast<std::uint64_t>(value);
}

class Unpacker {
public:
    Unpacker(NativeCall& call, std::string_view text, std::size_t at) : call_(call), text_(text), at_(at) {}

    std::size_t position() const { return at_; }

    void read(const Item& item, bool isBigEndian) {
        switch (item.kind) {
            case ItemKind::Padding:
                take(1);
                return;
            case ItemKind::FixedText:
                return call_.give(Value::text(text_.substr(take(item.size), item.size)));
            case ItemKind::ZeroText: {
                const std::size_t end = text_.find('\0', at_);
                if (end == std::string_view::npos) failCall(call_, "the text is too short");
                call_.give(Value::text(text_.substr(at_, end - at_)));
                at_ = end + 1;
                return;
            }
            default:
                readNumber(item, bytesAt(text_, take(item.size), item.size, isBigEndian));
        }
    }

private:
    std::size_t take(std::uint64_t size) {
        if (size > text_.size() - at_) failCall(call_, "the text is too short");
        const std::size_t start = at_;
        at_ += static_cast<std::size_t>(size);
        return start;
    }
    void readNumber(const Item& item, std::uint64_t bits) {
        if (item.kind == ItemKind::CountedText) {
            const std::size_t start = take(bits);
            return call_.give(Value::text(text_.substr(start, at_ - start)));
        }
        if (item.kind == ItemKind::Float) {
            const double value =
                item.size == 4 ? static_cast<double>(std::bit_cast<float>(static_cast<std::uint32_t>(bits)))
                               : std::bit_cast<double>(bits);
            return call_.give(Value::number(value));
        }
        const std::size_t unused = 64 - 8 * item.size;
        const auto value = item.kind == ItemKind::Signed ? static_cast<std::int64_t>(bits << unused) >> unused
                                                         : static_cast<std::int64_t>(bits);
        call_.give(Value::integer(value));
    }

    NativeCall& call_;
    std::string_view text_;
    std::size_t at_;
};

}  // namespace

void packText(NativeCall& call) {
    requireAtLeast(call, 1);
    FormatReader format(call, requireString(call, 0));
    std::string out;
    std::size_t position = 1;
    for (Item item = format.next(); item.kind != ItemKind::End; item = format.next()) {
        switch (item.kind) {
            case ItemKind::Padding:
                out += '\0';
                continue;
            case ItemKind::Float:
                appendBytes(out, floatBits(requireNumber(call, position), item.size), item.size,
                            format.isBigEndian());
                break;
            case ItemKind::Signed:
            case ItemKind::Unsigned:
                appendBytes(out, integerBits(call, position, item), item.size, format.isBigEndian());
                break;
            default: {
                const std::string_view text = requireString(call, position);
                if (item.kind == ItemKind::FixedText && text.size() > item.size)
                    failCall(call, "a text is longer than its field");
                if (item.kind == ItemKind::ZeroText && text.find('\0') != std::string_view::npos)
                    failCall(call, "a text holds a zero byte");
                if (item.kind == ItemKind::CountedText) {
                    if (item.size < 4 && text.size() >> (8 * item.size) != 0)
                        failCall(call, "a text is longer than its count can tell");
                    appendBytes(out, text.size(), item.size, format.isBigEndian());
                }
                out += text;
                if (item.kind == ItemKind::ZeroText) out += '\0';
                if (item.kind == ItemKind::FixedText) out.append(item.size - text.size(), '\0');
            }
        }
        ++position;
        checkTextSize(out.size());
    }
    call.give(Value::text(out));
}

// The values, and the position behind the last of them.
void unpackText(NativeCall& call) {
    requireArgumentCount(call, 2, 3);
    FormatReader format(call, requireString(call, 0));
    const std::string_view text = requireString(call, 1);
    std::int64_t start = optionalInteger(call, 2, 1);
    if (start < 0) start += static_cast<std::int64_t>(text.size()) + 1;
    if (start < 1 || static_cast<std::uint64_t>(start) > text.size() + std::uint64_t{1})
        failCall(call, "the position is out of range");
    Unpacker unpacker(call, text, static_cast<std::size_t>(start - 1));
    for (Item item = format.next(); item.kind != ItemKind::End; item = format.next())
        unpacker.read(item, format.isBigEndian());
    call.give(Value::integer(static_cast<std::int64_t>(unpacker.position()) + 1));
}

}  // namespace vesper::lua
