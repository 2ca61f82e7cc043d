#include "support/rwby_world.h"

// Reads an image and runs it for a while, by both ways to run.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using vesper::ruby::ExecutionMode;
    for (const ExecutionMode mode : {ExecutionMode::Full, ExecutionMode::PlainInstructions}) {
        kelmora::fuzz::RwbyWorld world(mode);
        world.vm.runBytecode({data, size});
    }
    return 0;
}
