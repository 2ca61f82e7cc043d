#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "rwby/ruby_vm.h"

// Rwby programs whose expected output stands beside the lines that make it:
//     print(1 + 1)    # expect: 2
//     x = 1 / 0       # error: division by zero
// An `error` comment says how the run ends, and on which line.
namespace kelmora {

struct RwbyOutcome {
    std::string output;
    std::string error;  // of the last source
};

enum class RwbyForm { Text, Image };

// Runs sources one after another in one machine. Where there are several, what fails is in the output.
RwbyOutcome runRwby(const std::vector<std::string>& sources, RwbyForm form, vesper::ruby::ExecutionMode mode,
                    std::uint64_t stepLimit = 0);
// Runs the source in every form and mode against its comments.
void expectRwbyComments(const std::string& source);

}  // namespace kelmora
