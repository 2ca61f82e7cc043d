#include "bindings/guest_interop.h"

#include "bindings/guest_traits.h"

namespace kelmora {
namespace {

template <typename Guest>
using GuestArguments = std::span<const typename Guest::Value>;

// name(variable) reads and name(variable, value) writes and reads back.
template <typename Guest, typename Read, typename Write>
typename Guest::Value accessVariable(const std::string& function, GuestArguments<Guest> arguments,
                                     Read&& read, Write&& write) {
    if (arguments.empty() || arguments.size() > 2)
        bindingError(function, "expects " + function + "(name) or " + function + "(name, value)");
    if (Guest::kindOf(arguments[0]) != BridgeKind::String) bindingError(function, "name must be a string");
    const std::string name(Guest::textOf(arguments[0]));
    if (arguments.size() == 2) write(name, outOfGuest<Guest>(arguments[1], function));
    return intoGuest<Guest>(read(name), function);
}

template <typename Guest>
typename Guest::Value vesperVariable(Runtime& runtime, GuestArguments<Guest> arguments) {
    return accessVariable<Guest>(
        "vesper_var", arguments, [&](const std::string& name) { return runtime.engine.pullVariable(name); },
        [&](const std::string& name, const Variable& value) { runtime.engine.pushVariable(name, value); });
}

// A global of the other guest; one that nobody knows is nothing.
template <typename Guest, typename Other>
typename Guest::Value otherVariable(const std::string& function, typename Other::Machine& other,
                                    GuestArguments<Guest> arguments) {
    return accessVariable<Guest>(
        function, arguments,
        [&](const std::string& name) {
            const auto value = other.getGlobal(name);
            return value ? outOfGuest<Other>(*value, function) : Variable();
        },
        [&](const std::string& name, const Variable& value) {
            other.setGlobal(name, intoGuest<Other>(value, function));
        });
}

}  // namespace

void bindLuaScriptEngineInterop(Runtime& runtime) {
    using Arguments = GuestArguments<LuaGuest>;
    runtime.lua.bindNativeGlobal("vesper_var", [&runtime](Arguments arguments) {
        return vesperVariable<LuaGuest>(runtime, arguments);
    });
    runtime.lua.bindNativeGlobal("ruby_var", [&runtime](Arguments arguments) {
        return otherVariable<LuaGuest, RubyGuest>("ruby_var", runtime.ruby, arguments);
    });
    runtime.lua.bindNativeGlobal("time_ms", [](Arguments arguments) {
        if (!arguments.empty()) bindingError("time_ms", "expects no arguments");
        return LuaGuest::integer(systemMicroseconds() / 1000);
    });
}

void bindRubyScriptEngineInterop(Runtime& runtime) {
    using Machine = vesper::ruby::RubyVM;
    using Arguments = GuestArguments<RubyGuest>;
    runtime.ruby.bindFunction("vesper_var", [&runtime](Machine&, Arguments arguments) {
        return vesperVariable<RubyGuest>(runtime, arguments);
    });
    runtime.ruby.bindFunction("lua_var", [&runtime](Machine&, Arguments arguments) {
        return otherVariable<RubyGuest, LuaGuest>("lua_var", runtime.lua, arguments);
    });
}

}  // namespace kelmora
