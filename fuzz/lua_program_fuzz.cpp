#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "support/confined_lua.h"

// A whole program prints the same whether its frames are used again or always fresh. Addresses differ.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view source(reinterpret_cast<const char*>(data), size);
    kelmora::fuzz::ConfinedLua plain;
    kelmora::fuzz::ConfinedLua fresh(true);
    const auto first = plain.machine.runScriptString(source);
    const auto second = fresh.machine.runScriptString(source);
    const bool isComparable = plain.host.output.find(": 0x") == std::string::npos &&
                              first.error.find(": 0x") == std::string::npos &&
                              first.error.find("too") == std::string::npos &&
                              second.error.find("too") == std::string::npos;
    if (!isComparable || (plain.host.output == fresh.host.output && first.error == second.error)) return 0;
    std::fprintf(stderr, "%s\n%s\n", (plain.host.output + first.error).c_str(),
                 (fresh.host.output + second.error).c_str());
    std::abort();
}
