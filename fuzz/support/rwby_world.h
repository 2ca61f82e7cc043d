#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "rwby/ruby_vm.h"
#include "support/capture_host.h"

namespace kelmora::fuzz {

// A host without files.
class ClosedHost : public CaptureHost {
public:
    std::FILE* openFile(const std::string&, const std::string&) override { return nullptr; }
};

// A machine with a few thousand rounds and calls to spend, and nothing that differs from run to run or asks
// for much memory at once.
class RwbyWorld {
public:
    explicit RwbyWorld(vesper::ruby::ExecutionMode mode) {
        for (const char* name :
             {"time_ms", "math_random", "array_new", "range", "string_rep", "string_format"})
            vm.removeGlobal(name);
        vm.setExecutionMode(mode);
        vm.setStepLimit(2000);
    }

    ClosedHost host;
    NativeStack stack;
    vesper::ruby::RubyVM vm{host, stack};
};

}  // namespace kelmora::fuzz
