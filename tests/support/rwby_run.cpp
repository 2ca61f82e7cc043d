#include "support/rwby_run.h"

#include <gtest/gtest.h>

#include "support/capture_host.h"

namespace kelmora {

GuestOutcome runRwby(const std::vector<std::string>& sources, RwbyForm form, vesper::ruby::ExecutionMode mode,
                     std::uint64_t stepLimit, const std::string& chunkName) {
    CaptureHost host;
    NativeStack stack;
    vesper::ruby::RubyVM vm(host, stack);
    vm.setExecutionMode(mode);
    vm.setStepLimit(stepLimit);
    GuestOutcome outcome;
    for (const std::string& source : sources) {
        vesper::ruby::RubyResult result;
        if (form == RwbyForm::Text) {
            result = vm.runScript(source, chunkName);
        } else {
            const auto compiled = vm.compileScript(source, chunkName);
            result.error = compiled.error;
            if (compiled.success) result = vm.runBytecode(compiled.bytecode);
        }
        EXPECT_EQ(result.success, result.error.empty());
        if (sources.size() > 1 && !result.success) host.output += "failed: " + result.error + "\n";
        outcome.error = result.error;
    }
    outcome.output = host.output;
    return outcome;
}

}  // namespace kelmora
