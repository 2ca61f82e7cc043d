#include "script/library/library.h"
#include "script/table_object.h"
#include "script/vesper_script.h"

namespace kelmora {
namespace {

Variable makeLibraryTable(const std::string& name, std::span<const LibraryEntry> entries) {
    Variable table = Variable::makeTable();
    for (const LibraryEntry& entry : entries)
        table.table().set(std::string(entry.name),
                          VesperScript::createLibraryCallable(entry.function, name + "." + entry.name));
    return table;
}

}  // namespace

Variable packResults(std::vector<Variable> values) {
    if (values.empty()) return {};
    if (values.size() == 1) return std::move(values[0]);
    return Variable::makeMulti(std::move(values));
}

VesperScript::VesperScript(HostServices& host) : host_(host), started_(std::chrono::steady_clock::now()) {
    stack_.markBase();
    for (const auto entries : {coreLibrary(), stateLibrary(), containerLibrary()})
        for (const LibraryEntry& entry : entries)
            pushVariable(entry.name, createLibraryCallable(entry.function, entry.name));
    pushVariable("string", makeLibraryTable("string", stringLibrary()));
    pushVariable("table", makeLibraryTable("table", tableLibrary()));
    pushVariable("math", makeLibraryTable("math", mathLibrary()));
    pushVariable("utf8", makeLibraryTable("utf8", utf8Library()));
    pushVariable("io", makeLibraryTable("io", ioLibrary()));
    pushVariable("os", makeLibraryTable("os", osLibrary()));
    pushVariable("VESPER_VERSION", Variable::number(0.6f));
    pushVariable("VESPER_BYTECODE_VERSION", Variable::integer(bytecodeVersion));
    pushVariable("VESPER_RELEASE", Variable::text("Beta"));
    pushVariable("VESPER_NAME", Variable::text("VesperScript"));
    pushVariable("VESPER_AUTHOR", Variable::text("The Kelmora team"));
}

VesperScript::~VesperScript() = default;

std::int32_t VesperScript::elapsedMilliseconds() const {
    const auto elapsed = std::chrono::steady_clock::now() - started_;
    return static_cast<std::int32_t>(std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}

void VesperScript::pushVariable(const std::string& name, const Variable& value) {
    scopes_.setGlobal(internName(name), value);
}

Variable VesperScript::pullVariable(const std::string& name) const {
    std::string_view scopedName;
    int scope = 0;
    const Variable* found = parseScopedVariableToken(name, scopedName, scope)
                                ? const_cast<Scopes&>(scopes_).findExplicit(internName(scopedName), scope)
                                : scopes_.find(internName(name));
    if (!found) throw std::runtime_error("Variable not found: " + name);
    return *found;
}

Variable VesperScript::createNativeCallable(NativeFunction body, const std::string& name, BuiltinId id) {
    Variable function = Variable::function(new ScriptCallable);
    ScriptCallable& callable = function.function();
    callable.isNative = true;
    callable.native = std::move(body);
    callable.name = name;
    callable.builtinId = id != BuiltinId::None ? id : builtinIdFromName(name);
    return function;
}

Variable VesperScript::createLibraryCallable(LibraryFunction body, const std::string& name) {
    Variable function = createNativeCallable(nullptr, name);
    function.function().library = body;
    return function;
}

Variable VesperScript::createBoundCallable(Binding body, const std::string& name) {
    Variable function = createNativeCallable(nullptr, name);
    function.function().binding = body;
    return function;
}

void VesperScript::pushFunction(const std::string& name, NativeFunction body) {
    pushVariable(name, createNativeCallable(std::move(body), name));
}

}  // namespace kelmora
