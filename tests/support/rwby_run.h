#pragma once

#include <string>
#include <vector>

#include "rwby/ruby_vm.h"
#include "support/guest_run.h"

namespace kelmora {

enum class RwbyForm { Text, Image };

// Runs sources one after another in one machine; the error is the last one's. Where there are several, what
// fails is in the output.
GuestOutcome runRwby(const std::vector<std::string>& sources, RwbyForm form, vesper::ruby::ExecutionMode mode,
                     std::uint64_t stepLimit = 0, const std::string& chunkName = "test");

}  // namespace kelmora
