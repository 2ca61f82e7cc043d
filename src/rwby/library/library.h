#pragma once

#include <span>

#include "rwby/globals.h"
#include "rwby/program.h"
#include "rwby/ruby_vm.h"

namespace vesper::ruby {

struct LibraryEntry {
    const char* name;
    NativeFunction function;
    ArgumentCount arguments;
    FunctionKind kind = FunctionKind::Native;
};

std::span<const LibraryEntry> valueLibrary();
std::span<const LibraryEntry> arrayLibrary();
std::span<const LibraryEntry> tableLibrary();
std::span<const LibraryEntry> mathLibrary();
std::span<const LibraryEntry> stringLibrary();
std::span<const LibraryEntry> patternLibrary();
std::span<const LibraryEntry> fileLibrary();

// Gives the machine its library and version.
void bindDefaults(RubyVM& vm, Globals& globals);

constexpr ArgumentCount exactly(std::size_t count) {
    return {count, count};
}
constexpr ArgumentCount between(std::size_t least, std::size_t most) {
    return {least, most};
}
constexpr ArgumentCount atLeast(std::size_t least) {
    return {least, ArgumentCount::any};
}

inline void require(bool condition, const char* message) {
    if (!condition) throw std::runtime_error(message);
}

// The elements' texts with the separator between them; `function` names the caller in failures.
RubyValue joinItems(std::span<const RubyValue> items, std::string_view separator);

}  // namespace vesper::ruby
