#include "script/library/format.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "script/numbers.h"

namespace kelmora {
namespace {

// Wider fields than any screen; more than this is refused instead of filling the memory with blanks.
constexpr int maximumField = 9999;

// One conversion: %[flags][width][.precision][length]letter. Length modifiers mean nothing here.
struct Specifier {
    std::string flags;
    int width = -1;
    int precision = -1;
    char conversion = '\0';

    bool leftAligned() const { return flags.find('-') != std::string::npos; }
    std::string pattern(std::string_view ending) const {
        std::string text = "%" + flags;
        if (width >= 0) text += std::to_string(width);
        if (precision >= 0) text += "." + std::to_string(precision);
        return text.append(ending);
    }
};

class Formatter {
public:
    explicit Formatter(Arguments arguments) : format_(arguments[0].text()), arguments_(arguments) {}

    std::string run() {
        while (at_ < format_.size()) {
            const char c = format_[at_++];
            if (c != '%') {
                out_ += c;
            } else if (at_ < format_.size() && format_[at_] == '%') {
                out_ += '%';
                ++at_;
            } else {
                convert(readSpecifier());
            }
        }
        return std::move(out_);
    }

private:
    static bool isOneOf(char c, std::string_view set) {
        return c != '\0' && set.find(c) != std::string_view::npos;
    }
    char peek() const { return at_ < format_.size() ? format_[at_] : '\0'; }

    int readNumber() {
        int value = 0;
        while (peek() >= '0' && peek() <= '9') {
            value = std::min(value * 10 + (peek() - '0'), maximumField + 1);
            ++at_;
        }
        if (value > maximumField) throw std::runtime_error("string['format']: failed to format value");
        return value;
    }
    Specifier readSpecifier() {
        Specifier specifier;
        while (isOneOf(peek(), "-+ #0")) {
            if (specifier.flags.find(peek()) == std::string::npos) specifier.flags += peek();
            ++at_;
        }
        if (peek() >= '0' && peek() <= '9') specifier.width = readNumber();
        if (peek() == '.') {
            ++at_;
            specifier.precision = readNumber();
        }
        while (isOneOf(peek(), "hlLzjt")) ++at_;
        if (at_ >= format_.size()) throw std::runtime_error("string['format']: incomplete format specifier");
        specifier.conversion = format_[at_++];
        return specifier;
    }

    const Variable& argumentFor(const Specifier& specifier) {
        if (next_ >= arguments_.size())
            throw std::runtime_error(
                std::string("string['format']: missing argument for format specifier %") +
                specifier.conversion);
        return arguments_[next_++];
    }

    void convert(const Specifier& specifier) {
        const char letter = specifier.conversion;
        if (!isOneOf(letter, "dixXoucsqeEfFgG"))
            throw std::runtime_error(std::string("string['format']: unsupported specifier %") + letter);
        const Variable& value = argumentFor(specifier);
        if (isOneOf(letter, "di")) {
            print(specifier.pattern("d"), toInt(value));
        } else if (isOneOf(letter, "xXou")) {
            print(specifier.pattern({&letter, 1}), static_cast<unsigned>(toInt(value)));
        } else if (letter == 'c') {
            pad(specifier, std::string(1, static_cast<char>(toInt(value))));
        } else if (letter == 's') {
            std::string text = value.toString();
            if (specifier.precision >= 0 && text.size() > static_cast<std::size_t>(specifier.precision))
                text.resize(static_cast<std::size_t>(specifier.precision));
            pad(specifier, text);
        } else if (letter == 'q') {
            quote(value.toString());
        } else {
            print(specifier.pattern({&letter, 1}), toDouble(value));
        }
    }

    template <typename Number>
    void print(const std::string& pattern, Number value) {
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
        std::array<char, 128> small{};
        const int length = std::snprintf(small.data(), small.size(), pattern.c_str(), value);
        if (length < 0) throw std::runtime_error("string['format']: failed to format value");
        const auto size = static_cast<std::size_t>(length);
        if (size < small.size()) {
            out_.append(small.data(), size);
            return;
        }
        std::string large(size + 1, '\0');
        if (std::snprintf(large.data(), large.size(), pattern.c_str(), value) != length)
            throw std::runtime_error("string['format']: failed to format string");
        out_.append(large, 0, size);
#pragma GCC diagnostic pop
    }
    void pad(const Specifier& specifier, const std::string& text) {
        const std::size_t width = specifier.width > 0 ? static_cast<std::size_t>(specifier.width) : 0;
        const std::size_t blanks = width > text.size() ? width - text.size() : 0;
        if (!specifier.leftAligned()) out_.append(blanks, ' ');
        out_ += text;
        if (specifier.leftAligned()) out_.append(blanks, ' ');
    }
    void quote(const std::string& text) {
        out_ += '"';
        for (const char c : text) {
            switch (c) {
                case '"':
                    out_ += "\\\"";
                    break;
                case '\\':
                    out_ += "\\\\";
                    break;
                case '\n':
                    out_ += "\\n";
                    break;
                case '\r':
                    out_ += "\\r";
                    break;
                case '\t':
                    out_ += "\\t";
                    break;
                default:
                    out_ += c;
                    break;
            }
        }
        out_ += '"';
    }

    const std::string& format_;
    Arguments arguments_;
    std::string out_;
    std::size_t at_ = 0;
    std::size_t next_ = 1;
};

}  // namespace

std::string formatText(Arguments arguments) {
    return Formatter(arguments).run();
}

}  // namespace kelmora
