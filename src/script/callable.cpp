#include "script/callable.h"

namespace kelmora {

Variable makeNativeCallable(NativeFunction body, const std::string& name, BuiltinId id) {
    Variable function = Variable::function(new ScriptCallable);
    ScriptCallable& callable = function.function();
    callable.isNative = true;
    callable.native = std::move(body);
    callable.name = name;
    callable.builtinId = id != BuiltinId::None ? id : builtinIdFromName(name);
    return function;
}

Variable makeLibraryCallable(LibraryFunction body, const std::string& name) {
    Variable function = makeNativeCallable(nullptr, name);
    function.function().library = body;
    return function;
}

Variable makeBoundCallable(Binding body, const std::string& name) {
    Variable function = makeNativeCallable(nullptr, name);
    function.function().binding = body;
    return function;
}

}  // namespace kelmora
