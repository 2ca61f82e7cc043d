#include <cstdio>
#include <cstdlib>

#include "support/rwby_world.h"

namespace {

bool ranOutOfStack(const std::string& output) {
    return output.find("Stack overflow") != std::string::npos;
}

std::string outputOf(std::string_view source, vesper::ruby::ExecutionMode mode) {
    kelmora::fuzz::RwbyWorld world(mode);
    const auto result = world.vm.runScript(source, "fuzz");
    return world.host.output + result.error;
}

}  // namespace

// Runs a program for a while, by both ways to run, which must agree. How deep calls may go is left to them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using vesper::ruby::ExecutionMode;
    const std::string_view source(reinterpret_cast<const char*>(data), size);
    const std::string full = outputOf(source, ExecutionMode::Full);
    const std::string plain = outputOf(source, ExecutionMode::PlainInstructions);
    if (full == plain || ranOutOfStack(full) || ranOutOfStack(plain)) return 0;
    std::fprintf(stderr, "full: %s\nplain: %s\n", full.c_str(), plain.c_str());
    std::abort();
}
