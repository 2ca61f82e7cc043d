#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace kelmora {

struct Interpreter;

// A snapshot of the globals that hold plain values and script functions, and of the random generator.
// Everything else, pointers and native functions above all, is left out.
std::vector<unsigned char> exportState(Interpreter& script);

// Sets the globals that the snapshot holds; the others stay. Raises std::runtime_error with the source's name
// behind the text; what was read before a failure has been set.
void importState(Interpreter& script, std::span<const unsigned char> bytes, const std::string& sourceName);

}  // namespace kelmora
