#pragma once

#include <span>

#include "lua/interpreter.h"

namespace vesper::lua {

struct LibraryEntry {
    const char* name;
    NativeFunction function;
};

// Makes the version globals and the whole library.
void bindDefaults(Interpreter& machine);

// Each library binds its functions and constants.
void bindBasicLibrary(Interpreter& machine);
void bindStringLibrary(Interpreter& machine);
void bindTableLibrary(Interpreter& machine);
void bindMathLibrary(Interpreter& machine);
void bindSystemLibrary(Interpreter& machine);

void bindNativeGlobal(Interpreter& machine, const char* name, NativeFunction function);
// Under the name "table.member" in messages.
void bindTableFunction(Interpreter& machine, Table& table, std::string_view tableName,
                       const LibraryEntry& entry);
Value bindTable(Interpreter& machine, const char* name, std::span<const LibraryEntry> entries);

}  // namespace vesper::lua
