#pragma once

#include <cassert>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "script/builtin_ids.h"
#include "script/names.h"
#include "script/parsed_line.h"
#include "script/source_file.h"
#include "script/variable.h"

namespace kelmora {

struct Interpreter;
struct BytecodeProgram;
struct Cell;
struct Code;

using NativeFunction = std::function<Variable(const std::vector<Variable>&)>;
class BindingCall;
// A member of a module of the host.
using Binding = Variable (*)(const BindingCall&);
// A function of the built-in library: called with its arguments in place, without building a vector.
using LibraryFunction = Variable (*)(Interpreter&, std::span<const Variable>);

// One function value.
struct ScriptCallable : RefCounted {
    bool isNative = false;
    bool isDecay = false;
    bool isVariadic = false;
    // A whole loaded script: it takes no arguments and adopts the native scope level of its first run.
    bool isLoadedChunk = false;
    bool hasRun = false;
    // A compiled function whose arguments are all parameters: a call makes them where they will stand.
    bool bindsArguments = false;
    BuiltinId builtinId = BuiltinId::None;
    std::uint32_t nativeScopeIndex = 0;

    LibraryFunction library = nullptr;
    Binding binding = nullptr;
    NativeFunction native;
    std::string name;

    std::vector<NameId> parameters;
    // Either a chunk of a compiled program or lines of its own for the direct executor.
    std::shared_ptr<const BytecodeProgram> program;
    std::uint32_t chunkIndex = 0;
    void setProgram(std::shared_ptr<const BytecodeProgram> holder, std::uint32_t chunk) {
        program = std::move(holder);
        chunkIndex = chunk;
        bindsArguments = !isDecay && !isVariadic;
    }
    // Of the chunk, when it has first been called; the second only if it binds its arguments.
    const Code* code = nullptr;
    const Code* boundCode = nullptr;
    std::vector<Cell*> parameterCells;
    std::uint32_t parameterCount = 0;
    std::vector<ParsedScriptLine> body;
    SourceFile source;

    // What dies with this function: its labels and shaders compiled from it watch for that.
    std::weak_ptr<const bool> lifetime() {
        if (!life) life = std::make_shared<const bool>(true);
        return life;
    }
    std::shared_ptr<const bool> life;  // made when it is first asked for
};

// Function values. The id is looked up by the name when it is not given.
Variable makeNativeCallable(NativeFunction body, const std::string& name, BuiltinId id = BuiltinId::None);
Variable makeLibraryCallable(LibraryFunction body, const std::string& name);
Variable makeBoundCallable(Binding body, const std::string& name);

inline ScriptCallable& Variable::function() const {
    assert(isFunction());
    return static_cast<ScriptCallable&>(*object());
}

}  // namespace kelmora
