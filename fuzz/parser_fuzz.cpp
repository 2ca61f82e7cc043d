#include <exception>
#include <string>

#include "script/vesper_script.h"
#include "support/capture_host.h"

// Splits, tokenises, prepares and compiles a source, and puts it through an image.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelmora::CaptureHost host;
    kelmora::VesperScript script(host);
    try {
        const auto program = script.compileToBytecode(std::string(reinterpret_cast<const char*>(data), size));
        kelmora::VesperScript::deserialiseBytecode(kelmora::VesperScript::serialiseBytecode(program), "fuzz");
    } catch (const std::exception&) {
    }
    return 0;
}
