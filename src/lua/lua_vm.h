#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/call_trail.h"
#include "base/host_services.h"
#include "base/native_stack.h"
#include "lua/lua_value.h"

namespace vesper::lua {

// A VLBC image: the chunk's name and its source behind a header.
using LuaBytecode = std::vector<std::uint8_t>;

// How a run ended. os.exit is a success.
struct LuaResult {
    bool success = false;
    std::string error;  // "chunk:line: message"
    std::vector<LuaValue> values;
    std::optional<int> exitCode;     // what os.exit was called with
    bool valuesCannotLeave = false;  // the run itself went well
    kelmora::CallTrail trail = {};   // the calls that led to the failure
};

using LuaNative = std::function<LuaValue(std::span<const LuaValue> arguments)>;

// One world of VesperLua: its globals last from run to run. Host and stack are borrowed; the one who owns the
// stack marks its base. Paths are taken as they are.
class LuaVM {
public:
    LuaVM(kelmora::HostServices& host, kelmora::NativeStack& stack);
    ~LuaVM();
    LuaVM(const LuaVM&) = delete;
    LuaVM& operator=(const LuaVM&) = delete;

    LuaResult runScriptString(std::string_view source, std::string_view chunkName = "<string>");
    LuaResult runScriptFile(const std::string& path);
    LuaResult runBytecode(const LuaBytecode& image);
    LuaResult runBytecodeFile(const std::string& path);

    // Raises kelmora::guest::GuestError for a source that does not compile.
    LuaBytecode compileScript(std::string_view source, std::string_view chunkName = "<string>");
    // False, and the reason, when the source does not compile or the file cannot be written.
    [[nodiscard]] bool writeBytecodeFile(std::string_view source, std::string_view chunkName,
                                         const std::string& outputPath, std::string* error);

    // Nothing for a name that no script mentioned. Raises for values that cannot leave.
    std::optional<LuaValue> getGlobal(std::string_view name) const;
    void setGlobal(std::string_view name, const LuaValue& value);
    // What it raises is an error of the calling script.
    void bindNativeGlobal(std::string_view name, LuaNative native);

    // The next runs end with "Step limit reached" after so many calls and rounds of loops.
    void setStepLimit(std::int64_t steps);
    // For tests: every local variable lives in a box of its own, made anew each time.
    void setFramesAlwaysFresh(bool fresh);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

LuaResult runLuaBytecode(LuaVM& machine, const LuaBytecode& image);

}  // namespace vesper::lua
