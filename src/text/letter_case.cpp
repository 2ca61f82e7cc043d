#include "text/letter_case.h"

namespace kelmora {
namespace {

std::string moveLetters(std::string_view text, char first, char last, int by) {
    std::string moved(text);
    for (char& c : moved)
        if (c >= first && c <= last) c = static_cast<char>(c + by);
    return moved;
}

}  // namespace

std::string upperCase(std::string_view text) {
    return moveLetters(text, 'a', 'z', 'A' - 'a');
}

std::string lowerCase(std::string_view text) {
    return moveLetters(text, 'A', 'Z', 'a' - 'A');
}

}  // namespace kelmora
