#include "text/pattern.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_map>

namespace kelmora {
namespace {

struct ExpressionForm {
    std::string body;
    bool ignoreCase = false;
};

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string escapeRegexLiteralChar(char c) {
    const bool special = c != '\0' && std::string_view("$()*+.?[\\]^{|}").find(c) != std::string_view::npos;
    return special ? std::string{'\\', c} : std::string(1, c);
}

// Content of the class letter inside brackets; empty for a letter that names none.
std::string_view classContent(char letter) {
    switch (letter) {
        case 'a':
            return "A-Za-z";
        case 'A':
            return "^A-Za-z";
        case 'l':
            return "a-z";
        case 'L':
            return "^a-z";
        case 'u':
            return "A-Z";
        case 'U':
            return "^A-Z";
        case 'x':
            return "A-Fa-f0-9";
        case 'X':
            return "^A-Fa-f0-9";
        case 'p':
            return "!-/:-@\\[-`\\{-~";
        case 'P':
            return "^!-/:-@\\[-`\\{-~";
        default:
            return {};
    }
}

std::string translatePercent(char letter, bool inClass) {
    if (std::string_view("dDsSwW").find(letter) != std::string_view::npos) return {'\\', letter};
    if (const std::string_view content = classContent(letter); !content.empty())
        return inClass ? std::string(content) : "[" + std::string(content) + "]";
    return escapeRegexLiteralChar(letter);
}

// "." matches every byte; escaped dots and dots inside brackets stay.
std::string makeDotMatchAll(const std::string& body) {
    std::string result;
    bool inClass = false;
    for (std::size_t i = 0; i < body.size(); ++i) {
        const char c = body[i];
        if (c == '\\' && i + 1 < body.size()) {
            result += c;
            result += body[++i];
            continue;
        }
        if (c == '[') inClass = true;
        if (c == ']') inClass = false;
        if (c == '.' && !inClass) {
            result += "[\\s\\S]";
        } else {
            result += c;
        }
    }
    return result;
}

// Finds the slash that ends the body of "/body/flags"; npos when the text is not of that form.
std::size_t closingSlash(const std::string& text) {
    if (text.size() < 2 || text[0] != '/') return std::string::npos;
    std::size_t last = std::string::npos;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '\\') {
            ++i;
        } else if (text[i] == '/') {
            last = i;
        }
    }
    if (last == std::string::npos) return last;
    const bool lettersOnly =
        std::all_of(text.begin() + static_cast<std::ptrdiff_t>(last) + 1, text.end(), isLetter);
    return lettersOnly ? last : std::string::npos;
}

ExpressionForm readSlashForm(const std::string& text, std::size_t slash) {
    ExpressionForm form;
    const std::string flags = text.substr(slash + 1);
    form.body = text.substr(1, slash - 1);
    bool dotAll = false;
    for (const char flag : flags) {
        if (flag == 'i') {
            form.ignoreCase = true;
        } else if (flag == 'm') {
            dotAll = true;
        } else {
            throw std::runtime_error("gsub: unsupported regex flag '" + flags + "' (supported: i, m)");
        }
    }
    if (dotAll) form.body = makeDotMatchAll(form.body);
    return form;
}

ExpressionForm readPattern(const std::string& text) {
    if (text.size() >= 3 && text.starts_with("re:")) return {text.substr(3), false};
    if (const std::size_t slash = closingSlash(text); slash != std::string::npos)
        return readSlashForm(text, slash);
    return {translateLuaPattern(text), false};
}

}  // namespace

std::string translateLuaPattern(const std::string& pattern) {
    std::string result;
    bool inClass = false;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const char c = pattern[i];
        if (c == '%' && i + 1 < pattern.size()) {
            result += translatePercent(pattern[++i], inClass);
        } else if (inClass) {
            if (c == ']') inClass = false;
            if (c == '\\' || c == '^') result += '\\';
            result += c;
        } else if (c == '[') {
            inClass = true;
            result += c;
        } else if (c == '-') {
            result += "*?";
        } else if (c != '\0' && std::string_view("$()*+.?^").find(c) != std::string_view::npos) {
            result += c;
        } else {
            result += escapeRegexLiteralChar(c);
        }
    }
    return result;
}

regex::Pattern compilePattern(const std::string& text) {
    const ExpressionForm form = readPattern(text);
    try {
        return regex::Pattern::compile(form.body, form.ignoreCase);
    } catch (const regex::SyntaxError& error) {
        throw std::runtime_error("gsub: invalid regex pattern '" + text + "': " + error.what());
    }
}

const regex::Pattern& getCachedGsubPattern(const std::string& text) {
    static auto& cache = *new std::unordered_map<std::string, regex::Pattern>;
    if (const auto found = cache.find(text); found != cache.end()) return found->second;
    return cache.emplace(text, compilePattern(text)).first->second;
}

regex::Scratch& patternScratch() {
    static auto& scratch = *new regex::Scratch;
    return scratch;
}

}  // namespace kelmora
