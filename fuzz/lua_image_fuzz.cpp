#include "support/confined_lua.h"

// Reads an image and runs what it holds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelmora::fuzz::ConfinedLua confined;
    confined.machine.runBytecode(vesper::lua::LuaBytecode(data, data + size));
    return 0;
}
