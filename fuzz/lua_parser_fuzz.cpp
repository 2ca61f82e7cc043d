#include "lua/lua_vm.h"
#include "support/capture_host.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelmora::CaptureHost host;
    kelmora::NativeStack stack;
    stack.setBudget(std::size_t{1} << 20);
    stack.markBase();
    vesper::lua::LuaVM machine(host, stack);
    try {
        machine.compileScript({reinterpret_cast<const char*>(data), size});
    } catch (const std::exception&) {
    }
    return 0;
}
