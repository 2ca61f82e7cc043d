#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/host_services.h"
#include "base/native_stack.h"
#include "script/bytecode_program.h"
#include "script/callable.h"
#include "script/variable.h"

namespace kelmora {

struct Interpreter;

// The interpreter as its host sees it. One object is one world of script: its globals, functions and running
// code. Used from one thread. Failures of script are std::runtime_error or RaisedScriptError.
class VesperScript {
public:
    explicit VesperScript(HostServices& host);
    ~VesperScript();
    VesperScript(const VesperScript&) = delete;
    VesperScript& operator=(const VesperScript&) = delete;

    // --- Running source and programs ---
    Variable runScript(const std::string& source);
    Variable runBytecode(BytecodeProgram program);
    // Runs a text by the direct executor, without compiling it.
    Variable executeBlock(const std::string& source);
    BytecodeProgram compileToBytecode(const std::string& source);
    BytecodeProgram compileToBytecode(const std::string& source, const std::string& sourcePath);
    static std::vector<unsigned char> serialiseBytecode(const BytecodeProgram& program);
    static BytecodeProgram deserialiseBytecode(std::span<const unsigned char> bytes,
                                               const std::string& sourceName);
    // Of an image that this build's own compiler made and whose bytes outlive the program.
    static BytecodeProgram deserialiseOwnImage(std::span<const unsigned char> bytes);
    static void saveBytecode(const BytecodeProgram& program, const std::string& path);
    static BytecodeProgram loadBytecode(const std::string& path);
    // Off, every expression is evaluated by the token walk. The results are the same.
    void setFastExpressions(bool on);
    // Ends whatever runs with an error after so many calls, rounds and jumps, counted from now on.
    void setStepLimit(std::uint64_t steps);
    bool stepLimitReached() const;

    // --- Globals and functions ---
    void pushVariable(const std::string& name, const Variable& value);
    // A copy of what the name resolves to; raises "Variable not found: " with the name.
    Variable pullVariable(const std::string& name) const;
    // Every global that holds a value, in no particular order.
    std::vector<std::pair<std::string, Variable>> globals() const;
    void pushFunction(const std::string& name, NativeFunction body);
    static Variable createNativeCallable(NativeFunction body, const std::string& name,
                                         BuiltinId id = BuiltinId::None);
    Variable callCallable(const Variable& callee, const std::vector<Variable>& arguments);
    // A soft error is on its way: whoever calls script in a loop has to stop.
    bool shouldAbortForSoftRaisedError() const;

    // --- What it works with ---
    HostServices& host() const;
    // What the host's own functions work on; null until it is set.
    void setHostData(void* data) { hostData_ = data; }
    void* hostData() const { return hostData_; }
    // The budget that script shares with all that runs on the same native stack.
    NativeStack& nativeStack();
    static std::string normalisePath(const std::string& path);
    // Finds a path from the working directory, beside the running source, or in the Resources tree.
    std::string resolvePath(const std::string& path) const;
    // The state inside, for the parts of the language that are no part of it.
    Interpreter& interpreter() { return *interpreter_; }

private:
    std::unique_ptr<Interpreter> interpreter_;
    void* hostData_ = nullptr;
};

}  // namespace kelmora
