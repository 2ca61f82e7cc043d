#pragma once

#include <string>
#include <vector>

#include "script/vesper_script.h"

namespace kelmora {

enum class ConsoleLanguage { vesper, lua, rwby };

const char* nameOf(ConsoleLanguage language);

// Runs a line of one of the languages in the midst of a game and gives its value as text, empty for a
// statement. Raises std::runtime_error; the game goes on whatever the line does.
std::string runLine(VesperScript& engine, ConsoleLanguage language, const std::string& line);

// A value as an author would write it, cut off where it is long.
std::string described(const Variable& value);

// What a name stands for: a global, or what a novel remembers under it.
Variable namedValue(const VesperScript& engine, const std::string& name);

// The word that ends at the caret, and what it may become: globals, and behind `name["` the entries of that
// table.
struct Completion {
    std::size_t start = 0;  // of the word
    std::vector<std::string> words;
    std::string shared;  // what all of them begin with
};
Completion completionsOf(const VesperScript& engine, const std::string& line, std::size_t caret);

}  // namespace kelmora
