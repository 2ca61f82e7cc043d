#include <optional>
#include <stdexcept>

#include "base/whole_file.h"
#include "bindings/guest_traits.h"
#include "bindings/modules.h"
#include "bindings/runtime.h"

// The modules `Lua` and `Ruby`. They have the same members; what differs between the machines stands in the
// overloads at the top. A guest's failure reaches the script with the guest's own words and place.
namespace kelmora {
namespace {

constexpr const char* defaultSourceName = "<string>";

template <typename Guest>
typename Guest::Machine& machineOf(const BindingCall& call) {
    if constexpr (std::is_same_v<Guest, LuaGuest>) {
        return runtimeOf(call).lua;
    } else {
        return runtimeOf(call).ruby;
    }
}

auto runSource(vesper::lua::LuaVM& machine, const std::string& source, const std::string& name) {
    return machine.runScriptString(source, name);
}
auto runSource(vesper::ruby::RubyVM& machine, const std::string& source, const std::string& name) {
    return machine.runScript(source, name);
}

std::vector<unsigned char> compileSource(vesper::lua::LuaVM& machine, const std::string& source,
                                         const std::string& name) {
    return machine.compileScript(source, name);
}
std::vector<unsigned char> compileSource(vesper::ruby::RubyVM& machine, const std::string& source,
                                         const std::string& name) {
    vesper::ruby::RubyCompilation compiled = machine.compileScript(source, name);
    if (!compiled.success) throw std::runtime_error(compiled.error);
    return std::move(compiled.bytecode);
}

// None is `not`, several are a multi value.
Variable resultOf(const BindingCall& call, const vesper::lua::LuaResult& result) {
    if (result.valuesCannotLeave) call.fail(result.error);
    if (!result.success) throw TracedError(result.error, result.trail);
    std::vector<Variable> values;
    for (const vesper::lua::LuaValue& value : result.values)
        values.push_back(outOfGuest<LuaGuest>(value, call.function()));
    if (values.size() > 1) return Variable::makeMulti(std::move(values));
    return values.empty() ? Variable() : std::move(values[0]);
}
Variable resultOf(const BindingCall& call, const vesper::ruby::RubyResult& result) {
    if (!result.success) throw TracedError(result.error, result.trail);
    return outOfGuest<RubyGuest>(result.value, call.function());
}

std::string sourceName(const BindingCall& call, std::size_t index) {
    return index < call.count() && !call.at(index).isNot() ? call.text(index, "sourceName")
                                                           : defaultSourceName;
}

template <typename Guest>
Variable runScript(const BindingCall& call) {
    const std::string source = call.text(0, "scriptText");
    return resultOf(call, runSource(machineOf<Guest>(call), source, sourceName(call, 1)));
}

// Found as other script files are, and named as it was given.
template <typename Guest>
Variable runFile(const BindingCall& call) {
    const std::string path = call.path(0, "scriptPath");
    const auto source = readWholeFile(call.engine().resolvePath(path));
    if (source) return resultOf(call, runSource(machineOf<Guest>(call), *source, path));
    return resultOf(call, machineOf<Guest>(call).runScriptFile(path));
}

template <typename Guest>
Variable compileBytecode(const BindingCall& call) {
    const std::string source = call.text(0, "scriptText");
    const auto image = compileSource(machineOf<Guest>(call), source, sourceName(call, 1));
    return Variable::raw({image.begin(), image.end()});
}

template <typename Guest>
Variable writeBytecode(const BindingCall& call) {
    call.require(2);
    const std::string source = call.text(0, "scriptText");
    const std::string path = call.path(1, "bytecodePath");
    std::string error;
    if (!machineOf<Guest>(call).writeBytecodeFile(source, sourceName(call, 2), path, &error))
        throw std::runtime_error(error);
    return Variable::boolean(true);
}

template <typename Guest>
Variable runBytecode(const BindingCall& call) {
    const Variable bytecode = call.at(0);
    if (!bytecode.isRaw()) call.fail("bytecode must be raw bytecode data");
    const std::vector<char>& bytes = bytecode.rawBytes();
    return resultOf(
        call, machineOf<Guest>(call).runBytecode(std::vector<unsigned char>(bytes.begin(), bytes.end())));
}

template <typename Guest>
Variable runBytecodeFile(const BindingCall& call) {
    const std::string path = call.path(0, "bytecodePath");
    return resultOf(call, machineOf<Guest>(call).runBytecodeFile(call.engine().resolvePath(path)));
}

template <typename Guest>
Variable getVariable(const BindingCall& call) {
    const std::string& name = call.text(0, "name");
    std::optional<typename Guest::Value> value;
    try {
        value = machineOf<Guest>(call).getGlobal(name);
    } catch (const std::runtime_error& error) {
        call.fail(error.what());
    }
    return value ? outOfGuest<Guest>(*value, call.function()) : Variable();
}

template <typename Guest>
Variable setVariable(const BindingCall& call) {
    call.require(2);
    const std::string& name = call.text(0, "name");
    machineOf<Guest>(call).setGlobal(name, intoGuest<Guest>(call.at(1), call.function()));
    return {};
}

template <typename Guest>
constexpr BindingRow rows[] = {
    {"runScript", runScript<Guest>},
    {"runFile", runFile<Guest>},
    {"compileBytecode", compileBytecode<Guest>},
    {"writeBytecode", writeBytecode<Guest>},
    {"runBytecode", runBytecode<Guest>},
    {"runBytecodeFile", runBytecodeFile<Guest>},
    {"getVar", getVariable<Guest>},
    {"setVar", setVariable<Guest>},
};

}  // namespace

std::span<const BindingRow> luaBindings() {
    return rows<LuaGuest>;
}
std::span<const BindingRow> rubyBindings() {
    return rows<RubyGuest>;
}

}  // namespace kelmora
