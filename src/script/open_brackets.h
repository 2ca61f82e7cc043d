#pragma once

#include <cstdint>

namespace kelmora {

// The brackets that are open in a statement, each kind counted by itself: a closer of one kind closes none of
// another.
class OpenBrackets {
public:
    // Of a character outside strings.
    void take(char c) {
        switch (c) {
            case '(':
                ++parentheses_;
                break;
            case '[':
                ++brackets_;
                break;
            case '{':
                ++braces_;
                break;
            case ')':
                close(parentheses_);
                break;
            case ']':
                close(brackets_);
                break;
            case '}':
                close(braces_);
                break;
            default:
                break;
        }
    }
    std::uint32_t count() const { return parentheses_ + brackets_ + braces_; }

private:
    static void close(std::uint32_t& open) { open -= open > 0 ? 1 : 0; }

    std::uint32_t parentheses_ = 0;
    std::uint32_t brackets_ = 0;
    std::uint32_t braces_ = 0;
};

}  // namespace kelmora
