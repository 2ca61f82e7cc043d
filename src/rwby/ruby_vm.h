#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/call_trail.h"
#include "base/host_services.h"
#include "base/native_stack.h"
#include "rwby/program.h"
#include "rwby/value.h"

namespace vesper::ruby {

class RandomSource;

// A compiled program as a file holds it.
using RubyBytecode = std::vector<std::uint8_t>;

struct RubyResult {
    bool success = false;
    std::string error;              // with its place: "chunk:line: message"
    RubyValue value;                // of a top-level `return`, else nil
    kelmora::CallTrail trail = {};  // the calls that led to the failure
};

struct RubyCompilation {
    bool success = false;
    std::string error;
    RubyBytecode bytecode;
};

// What runs a program: everything that makes it fast, or less of it. All give the same results.
enum class ExecutionMode : std::uint8_t { Full, WithoutFastForms, PlainInstructions };

// A Rwby machine: a world of its own, whose globals stay between runs. Values do not outlive it. Runs report
// failures in their results and raise nothing.
class RubyVM {
public:
    RubyVM(kelmora::HostServices& host, kelmora::NativeStack& stack);
    RubyVM(const RubyVM&) = delete;
    RubyVM& operator=(const RubyVM&) = delete;
    ~RubyVM();

    RubyResult runScript(std::string_view source, std::string_view chunkName = "<string>");
    // The path is taken as it is, and names the chunk.
    RubyResult runScriptFile(const std::string& path);
    RubyResult runBytecode(std::span<const std::uint8_t> bytecode);
    RubyResult runBytecodeFile(const std::string& path);

    RubyCompilation compileScript(std::string_view source, std::string_view chunkName = "<string>");
    // False with the reason in `error` when the source does not compile or the file cannot be written.
    bool writeBytecodeFile(std::string_view source, std::string_view chunkName, const std::string& outputPath,
                           std::string* error);

    // Nothing for a name that no one has assigned.
    std::optional<RubyValue> getGlobal(std::string_view name) const;
    void setGlobal(std::string_view name, RubyValue value);
    void removeGlobal(std::string_view name);
    // The function may raise any std::exception; its text becomes an error of the program.
    void bindFunction(std::string name, BoundFunction function);

    // For library functions, within a run. These raise.
    RubyValue call(const RubyValue& function, Arguments arguments);
    RubyValue compileFunction(std::string_view source, std::string_view chunkName);
    kelmora::HostServices& host();
    RandomSource& random();

    // Runs end with "Step limit reached" after so many calls and rounds of loops. 0 lifts the limit.
    void setStepLimit(std::uint64_t steps);
    void setExecutionMode(ExecutionMode mode);

    class Impl;

private:
    std::unique_ptr<Impl> impl_;
};

// Raises GuestError for bytes that are no image. Names are not yet resolved; what is wrong with the
// instructions shows when they run.
kelmora::Ref<Program> deserialiseProgram(std::span<const std::uint8_t> bytecode);
RubyBytecode serialiseProgram(const Program& program);

}  // namespace vesper::ruby
