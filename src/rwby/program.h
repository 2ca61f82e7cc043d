#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "guest/traced_error.h"
#include "rwby/fast_form.h"
#include "rwby/inner_code.h"
#include "rwby/opcode.h"
#include "rwby/value.h"

namespace vesper::ruby {

class RubyVM;
class Globals;

struct CompiledFunction {
    std::string name;
    std::vector<std::string> parameters;
    std::vector<Instruction> instructions;

    // What finaliseProgramMetadata fills in. Slots are -1 where an instruction has none.
    std::vector<std::string> localNames;
    std::unordered_map<std::string, std::int32_t> localIndex;
    std::vector<std::int32_t> parameterSlots;
    std::vector<std::int32_t> localSlots;
    std::vector<std::int32_t> globalSlots;
    FastForm fast;
    InnerCode inner;
    // The count of arguments with which inner code may begin at once, as there is no quicker form; else -1.
    std::int32_t innerArguments = -1;

    std::int32_t ensureLocalSlot(const std::string& name);
};

// Function 0 is the entry, with all its names global.
struct Program : kelmora::RefCounted {
    std::vector<CompiledFunction> functions;
    RubyItems constants;
    std::string sourceName = "<string>";
    kelmora::guest::SharedSource source;  // null for one that comes from an image

    // Null when there is no such constant, or it is no string.
    const StringObject* nameConstant(std::int32_t index) const;
};

// Gives names their slots and builds the quick forms. What an image has wrong is left for the run to report.
void finaliseProgramMetadata(Program& program, Globals& globals);

using Arguments = std::span<const RubyValue>;
// Library functions raise std::runtime_error with the bare message.
using NativeFunction = RubyValue (*)(RubyVM& vm, Arguments arguments);
using BoundFunction = std::function<RubyValue(RubyVM& vm, Arguments arguments)>;

// The machine knows two functions of the library, so that errors need not unwind it.
enum class FunctionKind : std::uint8_t { Script, Native, Bound, Pcall, Error };

// How many arguments a library function takes.
struct ArgumentCount {
    static constexpr std::size_t any = SIZE_MAX;
    std::size_t least = 0;
    std::size_t most = any;
};
// "exactly 1 argument", "between 1 and 2 arguments", "at least 2 arguments".
std::string describeArgumentExpectation(ArgumentCount expected);

struct FunctionObject : kelmora::RefCounted {
    FunctionObject(std::string functionName, kelmora::Ref<Program> owner, std::int32_t functionIndex)
        : name(std::move(functionName)),
          program(std::move(owner)),
          index(functionIndex),
          target(&program->functions[static_cast<std::size_t>(functionIndex)]) {}
    FunctionObject(FunctionKind nativeKind, std::string functionName, NativeFunction function,
                   ArgumentCount expected)
        : kind(nativeKind), name(std::move(functionName)), native(function), arguments(expected) {}
    FunctionObject(std::string functionName, BoundFunction function)
        : kind(FunctionKind::Bound), name(std::move(functionName)), bound(std::move(function)) {}

    FunctionKind kind = FunctionKind::Script;
    std::string name;
    kelmora::Ref<Program> program;
    std::int32_t index = 0;
    const CompiledFunction* target = nullptr;  // of the program
    NativeFunction native = nullptr;
    ArgumentCount arguments;  // of a native function
    BoundFunction bound;
};

inline FunctionObject& RubyValue::functionObject() const {
    assert(isFunction());
    return static_cast<FunctionObject&>(*object());
}

}  // namespace vesper::ruby
