#include "text/printf_format.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "text/limits.h"

namespace kelmora {
namespace {

bool isOneOf(char c, std::string_view set) {
    return c != '\0' && set.find(c) != std::string_view::npos;
}

// One conversion: %[flags][width][.precision][length]letter.
struct Specifier {
    std::string flags;
    int width = -1;
    int precision = -1;
    char conversion = '\0';

    bool leftAligned() const { return flags.find('-') != std::string::npos; }
    std::string pattern(std::string_view length) const {
        std::string text = "%" + flags;
        if (width >= 0) text += std::to_string(width);
        if (precision >= 0) text += "." + std::to_string(precision);
        return text.append(length) + conversion;
    }
};

class Formatter {
public:
    Formatter(std::string_view format, FormatArguments& arguments) : format_(format), arguments_(arguments) {}

    std::string run() {
        while (at_ < format_.size()) {
            const char c = format_[at_++];
            if (c != '%') {
                out_ += c;
            } else if (peek() == '%') {
                out_ += '%';
                ++at_;
            } else {
                convert(readSpecifier());
            }
        }
        return std::move(out_);
    }

private:
    char peek() const { return at_ < format_.size() ? format_[at_] : '\0'; }

    int readNumber() {
        constexpr int tooWide = static_cast<int>(maximumTextSize) + 1;
        int value = 0;
        while (peek() >= '0' && peek() <= '9') {
            value = value > tooWide / 10 ? tooWide : value * 10 + (peek() - '0');
            ++at_;
        }
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
        if (at_ >= format_.size()) throw FormatFailure{FormatFault::Incomplete};
        specifier.conversion = format_[at_++];
        return specifier;
    }

    void convert(const Specifier& specifier) {
        const char letter = specifier.conversion;
        if (!isOneOf(letter, "dixXoucsqeEfFgG")) throw FormatFailure{FormatFault::Unsupported, letter};
        if (!arguments_.next()) throw FormatFailure{FormatFault::MissingArgument, letter};
        if (isOneOf(letter, "di")) {
            print(specifier, "ll", static_cast<long long>(arguments_.integer()));
        } else if (isOneOf(letter, "xXou")) {
            print(specifier, "ll", static_cast<unsigned long long>(arguments_.bits()));
        } else if (letter == 'c') {
            pad(specifier, std::string(1, static_cast<char>(arguments_.integer())));
        } else if (letter == 's') {
            std::string text = arguments_.text();
            if (specifier.precision >= 0 && text.size() > static_cast<std::size_t>(specifier.precision))
                text.resize(static_cast<std::size_t>(specifier.precision));
            pad(specifier, text);
        } else if (letter == 'q') {
            const std::string text = arguments_.text();
            claim(text.size());
            appendQuoted(out_, text);
        } else {
            print(specifier, "", arguments_.number());
        }
    }

    // Refuses what would not fit before any memory is asked for.
    void claim(std::size_t size) const {
        if (size > maximumTextSize || out_.size() > maximumTextSize - size)
            throw FormatFailure{FormatFault::TooLarge};
    }

    template <typename Number>
    void print(const Specifier& specifier, std::string_view length, Number value) {
        claim(static_cast<std::size_t>(std::max({specifier.width, specifier.precision, 0})));
        const std::string pattern = specifier.pattern(length);
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
        std::array<char, 128> small{};
        const int count = std::snprintf(small.data(), small.size(), pattern.c_str(), value);
        if (count < 0) throw FormatFailure{FormatFault::Unprintable};
        const auto size = static_cast<std::size_t>(count);
        if (size < small.size()) {
            out_.append(small.data(), size);
            return;
        }
        claim(size);
        std::string large(size + 1, '\0');
        if (std::snprintf(large.data(), large.size(), pattern.c_str(), value) != count)
            throw FormatFailure{FormatFault::Unprintable};
        out_.append(large, 0, size);
#pragma GCC diagnostic pop
    }
    void pad(const Specifier& specifier, const std::string& text) {
        const std::size_t width = specifier.width > 0 ? static_cast<std::size_t>(specifier.width) : 0;
        claim(std::max(width, text.size()));
        const std::size_t blanks = width > text.size() ? width - text.size() : 0;
        if (!specifier.leftAligned()) out_.append(blanks, ' ');
        out_ += text;
        if (specifier.leftAligned()) out_.append(blanks, ' ');
    }

    std::string_view format_;
    FormatArguments& arguments_;
    std::string out_;
    std::size_t at_ = 0;
};

std::string_view backslashForm(char c) {
    switch (c) {
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            return {};
    }
}

}  // namespace

std::string formatText(std::string_view format, FormatArguments& arguments) {
    return Formatter(format, arguments).run();
}

void appendQuoted(std::string& out, std::string_view text) {
    out += '"';
    for (const char c : text) {
        const std::string_view form = backslashForm(c);
        if (form.empty()) {
            out += c;
        } else {
            out += form;
        }
    }
    out += '"';
}

}  // namespace kelmora
