#include <exception>

#include "script/interpreter.h"
#include "script/state_file.h"
#include "script/vesper_script.h"
#include "support/capture_host.h"

// Applies a state file to a fresh interpreter.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelmora::CaptureHost host;
    kelmora::VesperScript script(host);
    try {
        kelmora::importState(script.interpreter(), {data, size}, "fuzz");
    } catch (const std::exception&) {
    }
    return 0;
}
