#include "font/type1_file.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "base/byte_reader.h"

namespace kelmora {
namespace {

constexpr std::uint8_t segmentMarker = 0x80;
constexpr std::uint8_t lastSegment = 3;
constexpr std::uint16_t eexecKey = 55665;
constexpr std::uint16_t charstringKey = 4330;
constexpr std::size_t eexecPadding = 4;
constexpr int defaultPadding = 4;
constexpr std::size_t maximumSubrs = 65536;

// The two forms differ in segment headers only.
std::string joinSegments(std::span<const std::uint8_t> bytes) {
    std::string out;
    ByteReader reader(bytes);
    if (bytes.empty() || bytes[0] != segmentMarker) return std::string(bytes.begin(), bytes.end());
    std::uint8_t marker = 0;
    std::uint8_t kind = 0;
    std::uint32_t length = 0;
    while (reader.readU8(marker) && marker == segmentMarker && reader.readU8(kind) && kind != lastSegment &&
           reader.readU32(length)) {
        std::string_view segment;
        if (!reader.readText(std::min<std::size_t>(length, reader.remaining()), segment)) break;
        out += segment;
    }
    return out;
}

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\0';
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

std::string decodeHexadecimal(std::string_view text) {
    std::string out;
    int high = -1;
    for (const char c : text) {
        const int value = hexValue(c);
        if (value < 0 && isSpace(c)) continue;
        if (value < 0) break;
        if (high >= 0) out += static_cast<char>(high << 4 | value);
        high = high >= 0 ? -1 : value;
    }
    return out;
}

// Drops the random bytes in front.
template <typename Bytes>
Bytes decrypt(std::string_view cipher, std::uint16_t key, std::size_t padding) {
    Bytes plain;
    plain.reserve(cipher.size());
    for (const char c : cipher) {
        const auto byte = static_cast<std::uint8_t>(c);
        plain.push_back(static_cast<typename Bytes::value_type>(byte ^ (key >> 8)));
        key = static_cast<std::uint16_t>((byte + key) * 52845u + 22719u);
    }
    plain.erase(plain.begin(), plain.begin() + static_cast<std::ptrdiff_t>(std::min(padding, plain.size())));
    return plain;
}

// The part behind "currentfile eexec", in the clear.
std::string decryptPrivate(std::string_view file, std::size_t clearEnd) {
    std::string_view cipher = file.substr(clearEnd);
    // A cipher may begin with any other byte, blank or not.
    cipher.remove_prefix(std::min(cipher.find_first_not_of(" \t\r\n"), cipher.size()));
    cipher = cipher.substr(0, cipher.rfind("cleartomark"));
    const std::string_view head = cipher.substr(0, 4);
    const bool isText = std::all_of(head.begin(), head.end(), [](char c) { return hexValue(c) >= 0; });
    if (!isText) return decrypt<std::string>(cipher, eexecKey, eexecPadding);
    return decrypt<std::string>(decodeHexadecimal(cipher), eexecKey, eexecPadding);
}

// Words of a font program, with the binary strings between them.
class Lexer {
public:
    explicit Lexer(std::string_view text) : text_(text) {}

    bool goBehind(std::string_view mark) {
        const std::size_t found = text_.find(mark, at_);
        if (found == std::string_view::npos) return false;
        at_ = found + mark.size();
        return true;
    }

    // Empty at the end. A name keeps its slash; brackets stand alone.
    std::string_view next() {
        while (at_ < text_.size() && isSpace(text_[at_])) ++at_;
        const std::size_t start = at_;
        if (at_ < text_.size()) ++at_;
        if (start < text_.size() && isBracket(text_[start])) return text_.substr(start, 1);
        while (at_ < text_.size() && !isSpace(text_[at_]) && !isBracket(text_[at_]) && text_[at_] != '/')
            ++at_;
        return text_.substr(start, at_ - start);
    }

    template <typename Number>
    bool nextNumber(Number& out) {
        const std::string_view word = next();
        const char* end = word.data() + word.size();
        return std::from_chars(word.data(), end, out).ptr == end && !word.empty();
    }

    // A length, a word that says what is to be done, one space and the string.
    bool nextString(std::string_view& out) {
        std::size_t length = 0;
        if (!nextNumber(length) || next().empty() || at_ == text_.size()) return false;
        if (length > text_.size() - at_ - 1) return false;
        out = text_.substr(at_ + 1, length);
        at_ += 1 + length;
        return true;
    }

    void back(std::string_view word) { at_ -= word.size(); }

private:
    static bool isBracket(char c) { return std::string_view("[]{}()<>").find(c) != std::string_view::npos; }

    std::string_view text_;
    std::size_t at_ = 0;
};

// The numbers between the brackets behind `name`; unchanged unless all are there.
template <std::size_t count>
void readArray(std::string_view text, std::string_view name, std::array<double, count>& out) {
    Lexer lexer(text);
    if (!lexer.goBehind(name) || lexer.next().empty()) return;
    std::array<double, count> numbers{};
    for (double& number : numbers)
        if (!lexer.nextNumber(number)) return;
    out = numbers;
}

class PrivateReader {
public:
    PrivateReader(std::string_view text, Type1File& font) : text_(text), font_(font) {}

    bool read() {
        Lexer lexer(text_);
        if (lexer.goBehind("/lenIV") && !lexer.nextNumber(padding_)) return false;
        lexer = Lexer(text_);
        if (lexer.goBehind("/Subrs")) {
            readSubrs(lexer);
        } else {
            lexer = Lexer(text_);
        }
        if (!lexer.goBehind("/CharStrings")) return false;
        readCharStrings(lexer);
        return !font_.charStrings.empty();
    }

private:
    // A negative padding says that charstrings are not encrypted.
    Charstring decode(std::string_view string) const {
        if (padding_ < 0) return Charstring(string.begin(), string.end());
        return decrypt<Charstring>(string, charstringKey, static_cast<std::size_t>(padding_));
    }

    // Entries read "dup 5 23 RD <bytes> NP". The next name ends them.
    void readSubrs(Lexer& lexer) {
        for (;;) {
            const std::string_view word = lexer.next();
            if (word.starts_with('/')) lexer.back(word);
            if (word.empty() || word.starts_with('/')) return;
            if (word != "dup") continue;
            const std::string_view entry = lexer.next();
            lexer.back(entry);
            if (entry.starts_with('/')) return;  // "dup /CharStrings"
            std::size_t index = 0;
            std::string_view string;
            if (!lexer.nextNumber(index) || index >= maximumSubrs || !lexer.nextString(string)) return;
            if (index >= font_.subrs.size()) font_.subrs.resize(index + 1);
            font_.subrs[index] = decode(string);
        }
    }

    // Entries read "/name 23 RD <bytes> ND". "end" closes the dictionary.
    void readCharStrings(Lexer& lexer) {
        for (;;) {
            const std::string_view word = lexer.next();
            if (word.empty() || word == "end") return;
            if (!word.starts_with('/')) continue;
            std::string_view string;
            if (!lexer.nextString(string)) return;
            font_.charStrings.try_emplace(std::string(word.substr(1)), decode(string));
        }
    }

    std::string_view text_;
    Type1File& font_;
    int padding_ = defaultPadding;
};

}  // namespace

std::optional<Type1File> readType1File(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view mark = "currentfile eexec";
    const std::string file = joinSegments(bytes);
    const std::size_t found = file.find(mark);
    if (found == std::string::npos) return std::nullopt;
    const std::string_view clear = std::string_view(file).substr(0, found);
    Type1File font;
    readArray(clear, "/FontMatrix", font.fontMatrix);
    readArray(clear, "/FontBBox", font.fontBBox);
    const std::string secret = decryptPrivate(file, found + mark.size());
    if (!PrivateReader(secret, font).read()) return std::nullopt;
    return font;
}

}  // namespace kelmora
