#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kelmora {

// One line of a test of a game.
struct PlayStep {
    enum class Verb { press, click, choose, wait, expectText, expectVariable, shot };

    Verb verb = Verb::wait;
    int line = 1;
    std::string text;   // what is chosen or expected, the variable's name, the picture's file
    std::string value;  // of a variable
    int key = 0;        // virtual-key code
    int x = 0;
    int y = 0;
    int count = 0;  // updates to wait; how far a picture's colours may be off
};

// Reads a test: each line is one of
//     press KEY
//     click X Y                       pixels of the window
//     choose WORDS or NUMBER
//     wait UPDATES
//     expect text WORDS
//     expect variable NAME VALUE
//     shot FILE [within N]            N from 0 to 255
// Empty lines and lines that start with # are skipped. A bad line raises std::runtime_error with `name` and
// the line's number.
std::vector<PlayStep> parsePlayScript(std::string_view text, const std::string& name);

}  // namespace kelmora
