#include "lua/library/library.h"

#include <string>

namespace vesper::lua {

void bindNativeGlobal(Interpreter& machine, const char* name, NativeFunction function) {
    machine.globals().set(name, machine.makeNative(name, function));
}

void bindTableFunction(Interpreter& machine, Table& table, std::string_view tableName,
                       const LibraryEntry& entry) {
    const Value name = machine.strings().intern(entry.name);
    table.set(name.string(), machine.makeNative(std::string(tableName) + "." + entry.name, entry.function));
}

Value bindTable(Interpreter& machine, const char* name, std::span<const LibraryEntry> entries) {
    Value table = machine.makeTable(0, entries.size());
    for (const LibraryEntry& entry : entries) bindTableFunction(machine, table.table(), name, entry);
    machine.globals().set(name, table);
    return table;
}

void bindDefaults(Interpreter& machine) {
    for (const char* name : {"VESPERLUA_VERSION", "_VERSION"})
        machine.globals().set(name, Value::text("VesperLua 0.3"));
    bindBasicLibrary(machine);
    bindStringLibrary(machine);
    bindTableLibrary(machine);
    bindMathLibrary(machine);
    bindSystemLibrary(machine);
}

}  // namespace vesper::lua
