#pragma once

#include <string>

#include "base/regex/regex.h"

namespace kelmora {

// The regular expression that a script's pattern text stands for. Three forms: "re:" and a raw expression,
// "/body/flags", and else a Lua-flavoured pattern. Raises for an expression that is malformed or a flag other
// than i and m.
regex::Pattern compilePattern(const std::string& text);
// The same, kept for the life of the process by the exact text.
const regex::Pattern& getCachedGsubPattern(const std::string& text);

// A Lua-flavoured pattern in the grammar of regular expressions.
std::string translateLuaPattern(const std::string& pattern);

// Working memory that all searches of the interpreter's thread share.
regex::Scratch& patternScratch();

}  // namespace kelmora
