#include "lua/library/lua_pattern.h"

#include <bitset>
#include <stdexcept>

#include "text/pattern.h"

namespace vesper::lua {
namespace {

using ByteSet = std::bitset<256>;

struct Malformed {};

template <typename Predicate>
ByteSet bytesWhere(Predicate holds) {
    ByteSet set;
    for (int c = 0; c < 256; ++c) set[static_cast<std::size_t>(c)] = holds(c);
    return set;
}

ByteSet range(int first, int last) {
    return bytesWhere([=](int c) { return c >= first && c <= last; });
}

// What a letter behind % stands for, upper case for all other bytes; a byte that is no class letter for
// itself.
ByteSet percentSet(char letter) {
    static const ByteSet digits = range('0', '9');
    static const ByteSet lower = range('a', 'z');
    static const ByteSet upper = range('A', 'Z');
    static const ByteSet visible = range(33, 126);
    const bool isUpper = letter >= 'A' && letter <= 'Z';
    ByteSet set;
    switch (isUpper ? letter - 'A' + 'a' : letter) {
        case 'a':
            set = lower | upper;
            break;
        case 'c':
            set = range(0, 31) | range(127, 127);
            break;
        case 'd':
            set = digits;
            break;
        case 'g':
            set = visible;
            break;
        case 'l':
            set = lower;
            break;
        case 'p':
            set = visible & ~(lower | upper | digits);
            break;
        case 's':
            set = range(9, 13) | range(' ', ' ');
            break;
        case 'u':
            set = upper;
            break;
        case 'w':
            set = lower | upper | digits;
            break;
        case 'x':
            set = digits | range('a', 'f') | range('A', 'F');
            break;
        default:
            set[static_cast<unsigned char>(letter)] = true;
            return set;
    }
    return isUpper ? ~set : set;
}

class Translator {
public:
    Translator(std::string_view pattern, std::vector<bool>& positions)
        : pattern_(pattern), positions_(positions) {}

    std::string run() {
        while (at_ < pattern_.size()) translateItem();
        if (!open_.empty()) throw Malformed();
        return std::move(out_);
    }

private:
    char take() {
        if (at_ == pattern_.size()) throw Malformed();
        return pattern_[at_++];
    }
    bool takeIf(char wanted) {
        if (at_ == pattern_.size() || pattern_[at_] != wanted) return false;
        ++at_;
        return true;
    }

    void translateItem() {
        const char c = take();
        if (c == '(') {
            beginCapture();
        } else if (c == ')') {
            endCapture();
        } else if (c == '$' && at_ == pattern_.size()) {
            out_ += "(?!";
            appendSet(~ByteSet());
            out_ += ')';
        } else if (c == '%' && at_ < pattern_.size() && pattern_[at_] >= '0' && pattern_[at_] <= '9') {
            translateBackReference();
        } else {
            appendSet(readSet(c));
            translateRepeat();
        }
    }
    void beginCapture() {
        const bool isPosition = takeIf(')');
        positions_.push_back(isPosition);
        out_ += isPosition ? "()" : "(";
        if (!isPosition) open_.push_back(positions_.size());
    }
    void endCapture() {
        if (open_.empty()) throw Malformed();
        open_.pop_back();
        out_ += ')';
    }
    void translateBackReference() {
        const auto number = static_cast<std::size_t>(take() - '0');
        if (number == 0 || number > positions_.size()) throw Malformed();
        for (const std::size_t open : open_)
            if (open == number) throw Malformed();
        out_ += "(?:\\" + std::to_string(number) + ")";
    }
    void translateRepeat() {
        if (takeIf('*')) {
            out_ += '*';
        } else if (takeIf('+')) {
            out_ += '+';
        } else if (takeIf('-')) {
            out_ += "*?";
        } else if (takeIf('?')) {
            out_ += '?';
        }
    }

    ByteSet readSet(char c) {
        if (c == '.') return ~ByteSet();
        if (c == '[') return readBrackets();
        if (c == '%') return readPercent();
        ByteSet single;
        single[static_cast<unsigned char>(c)] = true;
        return single;
    }
    ByteSet readPercent() {
        const char letter = take();
        if (letter == 'b' || letter == 'f') throw Malformed();
        return percentSet(letter);
    }
    // A ] in front stands for itself.
    ByteSet readBrackets() {
        const bool isNegated = takeIf('^');
        ByteSet set;
        bool isFirst = true;
        for (char c = take(); c != ']' || isFirst; c = take()) {
            isFirst = false;
            if (c == '%') {
                set |= percentSet(take());
            } else if (at_ + 1 < pattern_.size() && pattern_[at_] == '-' && pattern_[at_ + 1] != ']') {
                ++at_;
                set |= range(static_cast<unsigned char>(c), static_cast<unsigned char>(take()));
            } else {
                set[static_cast<unsigned char>(c)] = true;
            }
        }
        return isNegated ? ~set : set;
    }

    void appendByte(std::size_t byte) {
        static constexpr char digits[] = "0123456789abcdef";
        out_ += "\\x";
        out_ += digits[byte / 16];
        out_ += digits[byte % 16];
    }
    void appendSet(const ByteSet& set) {
        if (set.none()) {
            out_ += "[^\\x00-\\x7f\\x80-\\xff]";
            return;
        }
        out_ += '[';
        for (std::size_t first = 0; first < set.size(); ++first) {
            if (!set[first]) continue;
            std::size_t last = first;
            // The expressions' order of bytes has a seam in the middle.
            while (last + 1 < set.size() && last != 127 && set[last + 1]) ++last;
            appendByte(first);
            if (last > first) {
                out_ += '-';
                appendByte(last);
            }
            first = last;
        }
        out_ += ']';
    }

    std::string_view pattern_;
    std::vector<bool>& positions_;
    std::size_t at_ = 0;
    std::vector<std::size_t> open_;  // captures by number
    std::string out_;
};

kelmora::regex::Pattern compileExpression(std::string_view pattern, std::vector<bool>& positions,
                                          bool& isAnchored) {
    isAnchored = pattern.starts_with('^');
    try {
        return kelmora::regex::Pattern::compile(
            translateLuaPatternToRegex(pattern.substr(isAnchored ? 1 : 0), positions));
    } catch (const kelmora::regex::SyntaxError&) {
    } catch (const Malformed&) {
    }
    throw std::runtime_error("gsub: invalid regex pattern '" + std::string(pattern) + "'");
}

}  // namespace

std::string translateLuaPatternToRegex(std::string_view pattern, std::vector<bool>& positions) {
    return Translator(pattern, positions).run();
}

LuaPattern::LuaPattern(std::string_view pattern)
    : expression_(compileExpression(pattern, positions_, isAnchored_)) {}

bool LuaPattern::search(std::string_view subject, std::size_t from,
                        kelmora::regex::Captures& captures) const {
    using kelmora::regex::MatchFlags;
    return expression_.search(subject, from, captures, kelmora::patternScratch(),
                              isAnchored_ ? MatchFlags::continuous : MatchFlags::none);
}

bool PatternMatches::next() {
    while (!isDone_ && from_ <= subject_.size()) {
        if (!pattern_.search(subject_, from_, captures_)) break;
        isDone_ = pattern_.isAnchored();
        const kelmora::regex::Capture& whole = captures_[0];
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

std::shared_ptr<const LuaPattern> cachedPattern(std::string_view text) {
    constexpr std::size_t mostPatterns = 1000;
    static auto& cache = *new std::unordered_map<std::string, std::shared_ptr<const LuaPattern>>;
    std::string key(text);
    if (const auto found = cache.find(key); found != cache.end()) return found->second;
    auto made = std::make_shared<const LuaPattern>(text);
    if (cache.size() >= mostPatterns) cache.clear();
    cache.emplace(std::move(key), made);
    return made;
}

bool isPlainPattern(std::string_view pattern) {
    return pattern.find_first_of("^$*+?.([%-") == std::string_view::npos;
}

}  // namespace vesper::lua
