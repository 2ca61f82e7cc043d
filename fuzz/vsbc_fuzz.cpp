#include "support/two_ways.h"

// Reads an image and runs what it holds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        auto program = kelmora::VesperScript::deserialiseBytecode({data, size}, "fuzz");
        kelmora::CaptureHost host;
        kelmora::VesperScript script(host);
        kelmora::fuzz::confine(script);
        script.runBytecode(std::move(program));
    } catch (const std::exception&) {
    }
    return 0;
}
