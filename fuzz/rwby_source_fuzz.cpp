#include <cstdint>

#include "rwby/ruby_vm.h"
#include "support/capture_host.h"

// Lexes and compiles a source, writes its image and reads it back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kelmora::CaptureHost host;
    kelmora::NativeStack stack;
    vesper::ruby::RubyVM vm(host, stack);
    const auto compiled = vm.compileScript({reinterpret_cast<const char*>(data), size});
    if (compiled.success) vesper::ruby::deserialiseProgram(compiled.bytecode);
    return 0;
}
