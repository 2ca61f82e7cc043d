#include "text/lua_pattern.h"

#include <algorithm>
#include <bitset>
#include <functional>
#include <stdexcept>
#include <unordered_map>

#include "text/pattern.h"

namespace kelmora {
namespace {

using ByteSet = std::bitset<256>;

bool isBetween(int c, int first, int last) {
    return c >= first && c <= last;
}

// The bytes of a class letter in lower case; false for a letter that names none.
bool classHolds(char letter, int c) {
    const bool isLower = isBetween(c, 'a', 'z');
    const bool isUpper = isBetween(c, 'A', 'Z');
    const bool isDigit = isBetween(c, '0', '9');
    switch (letter) {
        case 'a':
            return isLower || isUpper;
        case 'c':
            return c < 32 || c == 127;
        case 'd':
            return isDigit;
        case 'g':
            return isBetween(c, 33, 126);
        case 'l':
            return isLower;
        case 'p':
            return isBetween(c, 33, 126) && !isLower && !isUpper && !isDigit;
        case 's':
            return c == ' ' || isBetween(c, '\t', '\r');
        case 'u':
            return isUpper;
        case 'w':
            return isLower || isUpper || isDigit;
        default:  // 'x'
            return isDigit || isBetween(c, 'a', 'f') || isBetween(c, 'A', 'F');
    }
}

// What `%letter` matches: a class, in capitals its complement, else the byte itself.
ByteSet escapedSet(char letter) {
    ByteSet set;
    const bool isCapital = isBetween(letter, 'A', 'Z');
    const char lower = static_cast<char>(isCapital ? letter + ('a' - 'A') : letter);
    if (std::string_view("acdglpsuwx").find(lower) == std::string_view::npos) {
        set.set(static_cast<unsigned char>(letter));
        return set;
    }
    for (int c = 0; c < 256; ++c) set.set(static_cast<std::size_t>(c), classHolds(lower, c) != isCapital);
    return set;
}

class Translator {
public:
    Translator(std::string_view pattern, std::vector<bool>& positions)
        : pattern_(pattern), positions_(positions) {}

    std::string run() {
        while (at_ < pattern_.size()) translateItem();
        if (!open_.empty()) throw std::runtime_error("malformed pattern (unfinished capture)");
        return std::move(out_);
    }

private:
    char take() { return pattern_[at_++]; }

    void translateItem() {
        const char c = take();
        if (c == '(') {
            beginCapture();
        } else if (c == ')') {
            if (open_.empty()) throw std::runtime_error("invalid pattern capture");
            open_.pop_back();
            out_ += ')';
        } else if (c == '$' && at_ == pattern_.size()) {
            out_ += "(?![\\s\\S])";
        } else if (c == '%' && at_ < pattern_.size() && isBetween(pattern_[at_], '0', '9')) {
            translateBackReference();
        } else {
            appendSet(readSet(c));
            translateCount();
        }
    }
    void beginCapture() {
        const bool isPosition = at_ < pattern_.size() && pattern_[at_] == ')';
        positions_.push_back(isPosition);
        out_ += '(';
        if (isPosition) {
            out_ += take();
        } else {
            open_.push_back(positions_.size());
        }
    }
    // To a capture that is closed.
    void translateBackReference() {
        const char digit = take();
        const auto number = static_cast<std::size_t>(digit - '0');
        const bool isOpen = std::find(open_.begin(), open_.end(), number) != open_.end();
        if (number == 0 || number > positions_.size() || isOpen)
            throw std::runtime_error(std::string("malformed pattern (invalid capture index %") + digit + ")");
        out_ += '\\';
        out_ += digit;
    }
    void translateCount() {
        if (at_ == pattern_.size()) return;
        const char c = pattern_[at_];
        if (c != '*' && c != '+' && c != '-' && c != '?') return;
        ++at_;
        out_ += c == '-' ? std::string("*?") : std::string(1, c);
    }

    ByteSet readSet(char c) {
        if (c == '.') return ByteSet().set();
        if (c == '%') return readEscape();
        if (c == '[') return readBrackets();
        return ByteSet().set(static_cast<unsigned char>(c));
    }
    char readEscaped() {
        if (at_ == pattern_.size()) throw std::runtime_error("malformed pattern (ends with '%')");
        return take();
    }
    ByteSet readEscape() {
        const char letter = readEscaped();
        if (letter == 'b' || letter == 'f')
            throw std::runtime_error(std::string("%") + letter + " is not supported in patterns");
        return escapedSet(letter);
    }
    ByteSet readBrackets() {
        ByteSet set;
        const bool isNegated = at_ < pattern_.size() && pattern_[at_] == '^';
        if (isNegated) ++at_;
        for (bool isFirst = true;; isFirst = false) {
            if (at_ == pattern_.size()) throw std::runtime_error("malformed pattern (missing ']')");
            const char c = take();
            if (c == ']' && !isFirst) break;
            if (c == '%') {
                set |= escapedSet(readEscaped());
            } else if (at_ + 1 < pattern_.size() && pattern_[at_] == '-' && pattern_[at_ + 1] != ']') {
                ++at_;
                const auto last = static_cast<unsigned char>(take());
                for (unsigned byte = static_cast<unsigned char>(c); byte <= last; ++byte) set.set(byte);
            } else {
                set.set(static_cast<unsigned char>(c));
            }
        }
        return isNegated ? ~set : set;
    }

    void appendByte(std::size_t byte) {
        constexpr std::string_view digits = "0123456789abcdef";
        out_.append("\\x").append(1, digits[byte / 16]).append(1, digits[byte % 16]);
    }
    void appendSet(const ByteSet& set) {
        if (set.none()) {
            out_ += "[^\\s\\S]";
            return;
        }
        if (set.all()) {
            out_ += "[\\s\\S]";
            return;
        }
        const bool isSingle = set.count() == 1;
        if (!isSingle) out_ += '[';
        for (std::size_t first = 0; first < 256; ++first) {
            if (!set[first]) continue;
            std::size_t last = first;
            // The expressions' bytes are signed: a range stays on one side.
            while (last != 127 && last < 255 && set[last + 1]) ++last;
            appendByte(first);
            if (last > first) {
                out_ += '-';
                appendByte(last);
            }
            first = last;
        }
        if (!isSingle) out_ += ']';
    }

    std::string_view pattern_;
    std::size_t at_ = 0;
    std::vector<bool>& positions_;
    std::vector<std::size_t> open_;  // captures by number
    std::string out_;
};

regex::Pattern compileLua(std::string_view text, bool isAnchored, std::vector<bool>& positions) {
    const std::string expression = Translator(text.substr(isAnchored ? 1 : 0), positions).run();
    try {
        return regex::Pattern::compile(expression);
    } catch (const regex::SyntaxError& error) {
        throw std::runtime_error("invalid pattern '" + std::string(text) + "': " + error.what());
    }
}

}  // namespace

LuaPattern::LuaPattern(std::string_view text)
    : isAnchored_(text.starts_with('^')), expression_(compileLua(text, isAnchored_, positions_)) {}

bool LuaPattern::search(std::string_view subject, std::size_t from, regex::Captures& captures) const {
    return expression_.search(subject, from, captures, patternScratch(),
                              isAnchored_ ? regex::MatchFlags::continuous : regex::MatchFlags::none);
}

std::shared_ptr<const LuaPattern> cachedLuaPattern(std::string_view text) {
    constexpr std::size_t mostPatterns = 1000;
    struct Hash : std::hash<std::string_view> {
        using is_transparent = void;
    };
    using Cache = std::unordered_map<std::string, std::shared_ptr<const LuaPattern>, Hash, std::equal_to<>>;
    static Cache& cache = *new Cache;  // outlives every file-scope value
    if (const auto found = cache.find(text); found != cache.end()) return found->second;
    auto made = std::make_shared<const LuaPattern>(text);
    if (cache.size() >= mostPatterns) cache.clear();
    cache.emplace(std::string(text), made);
    return made;
}

bool isPlainPattern(std::string_view pattern) {
    return pattern.find_first_of("^$*+?.([%-") == std::string_view::npos;
}

bool LuaMatches::next() {
    while (!isDone_ && from_ <= subject_.size()) {
        if (!pattern_.search(subject_, from_, captures_)) break;
        isDone_ = pattern_.isAnchored();
        const regex::Capture& whole = captures_[0];
        if (whole.length() == 0 && whole.end == lastEnd_) {
            from_ = whole.end + 1;
            continue;
        }
        from_ = lastEnd_ = whole.end;
        return true;
    }
    isDone_ = true;
    return false;
}

void appendLuaReplacement(std::string& out, std::string_view replacement, const LuaPattern& pattern,
                          std::string_view subject, const regex::Captures& captures) {
    for (std::size_t i = 0; i < replacement.size(); ++i) {
        if (replacement[i] != '%') {
            out += replacement[i];
            continue;
        }
        const char form = ++i < replacement.size() ? replacement[i] : '\0';
        if (form == '%') {
            out += '%';
            continue;
        }
        if (!isBetween(form, '0', '9')) throw std::runtime_error("invalid use of '%' in replacement string");
        auto group = static_cast<std::size_t>(form - '0');
        if (group == 1 && captures.size() == 1) group = 0;
        if (group >= captures.size())
            throw std::runtime_error(std::string("invalid capture index %") + form +
                                     " in replacement string");
        if (group > 0 && pattern.isPosition(group - 1)) {
            out += std::to_string(captures[group].begin + 1);
        } else if (captures[group].tookPart) {
            out += captures[group].in(subject);
        }
    }
}

}  // namespace kelmora
