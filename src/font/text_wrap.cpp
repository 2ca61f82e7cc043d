#include "font/text_wrap.h"

#include <algorithm>
#include <optional>

#include "font/text_lines.h"

namespace kelmora {
namespace {

// Scripts that are written without blanks.
bool isIdeographic(std::uint32_t codepoint) {
    return (codepoint >= 0x3000 && codepoint <= 0x9fff) || (codepoint >= 0xac00 && codepoint <= 0xd7a3) ||
           (codepoint >= 0xf900 && codepoint <= 0xfaff) || (codepoint >= 0xff00 && codepoint <= 0xffef) ||
           (codepoint >= 0x20000 && codepoint <= 0x3ffff);
}

// Closing marks stay on the line of what they close.
bool staysWithTheOneBefore(std::uint32_t codepoint) {
    switch (codepoint) {
        case 0x3001:
        case 0x3002:
        case 0x300d:
        case 0x300f:
        case 0x3011:
        case 0xff01:
        case 0xff0c:
        case 0xff0e:
        case 0xff09:
        case 0xff1f:
            return true;
        default:
            return false;
    }
}

bool isBlank(std::uint32_t codepoint) {
    return codepoint == ' ' || codepoint == '\t';
}

class Wrapper {
public:
    Wrapper(FontHandle& font, LayoutUnit width) : font_(font), width_(width) {}

    std::string wrap(std::string_view text) {
        std::string wrapped;
        for (std::size_t start = 0;; ++start) {
            const std::size_t end = std::min(text.find('\n', start), text.size());
            wrapLine(text.substr(start, end - start), wrapped);
            if (end == text.size()) return wrapped;
            wrapped += '\n';
            start = end;
        }
    }

private:
    // Where a line may end, and where the next one then starts.
    struct Break {
        std::size_t end;
        std::size_t next;
    };

    void wrapLine(std::string_view line, std::string& wrapped) {
        std::size_t start = 0;
        while (const auto found = breakOf(line, start)) {
            wrapped += line.substr(start, found->end - start);
            wrapped += '\n';
            start = found->next;
        }
        wrapped += line.substr(start);
    }

    // The last place from `start` on that keeps the line narrow enough; nothing when all of it is.
    std::optional<Break> breakOf(std::string_view line, std::size_t start) {
        LineWidth measured(font_);
        std::optional<Break> last;
        std::uint32_t before = 0;
        for (std::size_t at = start; at < line.size();) {
            const std::size_t letter = at;
            const std::uint32_t codepoint = nextCodepoint(line, at);
            if (letter > start) noteBreak(before, codepoint, letter, start, last);
            before = codepoint;
            if (codepoint == '\r') continue;
            measured.add(codepoint);
            // Blanks may hang over: they go if the line breaks here.
            if (isBlank(codepoint) || measured.width() <= width_) continue;
            if (last) return Break{last->end, skipBlanks(line, last->next)};
            if (letter > start) return Break{letter, letter};
        }
        return std::nullopt;
    }

    static void noteBreak(std::uint32_t before, std::uint32_t codepoint, std::size_t letter,
                          std::size_t start, std::optional<Break>& last) {
        if (isBlank(codepoint)) {
            // The first blank of a row ends the line; blanks at its start are an indent.
            if (!isBlank(before) && letter > start) last = Break{letter, letter};
        } else if (before == '-' || before == 0x2010 || before == 0x2014 ||
                   ((isIdeographic(before) || isIdeographic(codepoint)) && !isBlank(before) &&
                    !staysWithTheOneBefore(codepoint))) {
            last = Break{letter, letter};
        }
    }

    static std::size_t skipBlanks(std::string_view line, std::size_t at) {
        while (at < line.size() && isBlank(static_cast<unsigned char>(line[at]))) ++at;
        return at;
    }

    FontHandle& font_;
    LayoutUnit width_;
};

}  // namespace

std::string wrapText(FontHandle& font, std::string_view text, LayoutUnit width) {
    return Wrapper(font, width).wrap(text);
}

}  // namespace kelmora
