#include <exception>

#include "script/vesper_script.h"
#include "support/capture_host.h"

// Reads an image. It is not run: an endless loop is a sound program.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        kelmora::VesperScript::deserialiseBytecode({data, size}, "fuzz");
    } catch (const std::exception&) {
    }
    return 0;
}
