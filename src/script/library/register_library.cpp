#include "script/interpreter.h"
#include "script/library/library.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

Variable makeLibraryTable(const std::string& name, std::span<const LibraryEntry> entries) {
    Variable table = Variable::makeTable();
    for (const LibraryEntry& entry : entries)
        table.table().set(std::string(entry.name),
                          makeLibraryCallable(entry.function, name + "." + entry.name));
    return table;
}

}  // namespace

Variable packResults(std::vector<Variable> values) {
    if (values.empty()) return {};
    if (values.size() == 1) return std::move(values[0]);
    return Variable::makeMulti(std::move(values));
}

void registerLibrary(Interpreter& script) {
    for (const auto entries : {coreLibrary(), stateLibrary(), containerLibrary()})
        for (const LibraryEntry& entry : entries)
            script.pushVariable(entry.name, makeLibraryCallable(entry.function, entry.name));
    script.pushVariable("string", makeLibraryTable("string", stringLibrary()));
    script.pushVariable("table", makeLibraryTable("table", tableLibrary()));
    script.pushVariable("math", makeLibraryTable("math", mathLibrary()));
    script.pushVariable("utf8", makeLibraryTable("utf8", utf8Library()));
    script.pushVariable("io", makeLibraryTable("io", ioLibrary()));
    script.pushVariable("os", makeLibraryTable("os", osLibrary()));
    script.pushVariable("VESPER_VERSION", Variable::number(0.6f));
    script.pushVariable("VESPER_BYTECODE_VERSION", Variable::integer(bytecodeVersion));
    script.pushVariable("VESPER_RELEASE", Variable::text("Beta"));
    script.pushVariable("VESPER_NAME", Variable::text("VesperScript"));
    script.pushVariable("VESPER_AUTHOR", Variable::text("The Kelmora team"));
}

}  // namespace kelmora
