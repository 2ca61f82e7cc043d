#pragma once

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "script/callable.h"
#include "script/variable.h"

namespace kelmora {

// One function of the built-in library.
struct LibraryEntry {
    const char* name;  // of the member, without its table
    LibraryFunction function;
};

std::span<const LibraryEntry> coreLibrary();
std::span<const LibraryEntry> containerLibrary();
std::span<const LibraryEntry> stateLibrary();
std::span<const LibraryEntry> stringLibrary();
std::span<const LibraryEntry> tableLibrary();
std::span<const LibraryEntry> mathLibrary();
std::span<const LibraryEntry> utf8Library();
std::span<const LibraryEntry> ioLibrary();
std::span<const LibraryEntry> osLibrary();

// Fills the globals of a new interpreter.
void registerLibrary(Interpreter& script);

using Arguments = std::span<const Variable>;

// No value is nil, one is itself, several are a multi value.
Variable packResults(std::vector<Variable> values);

inline void require(bool condition, const char* message) {
    if (!condition) throw std::runtime_error(message);
}

// string.gsub, which is a global function too.
Variable gsubFunction(Interpreter& script, Arguments arguments);
// random and math.random.
Variable randomFunction(Interpreter& script, Arguments arguments);

}  // namespace kelmora
