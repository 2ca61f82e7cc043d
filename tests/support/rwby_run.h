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
    std::string error;
    vesper::ruby::RubyValue value;
};

enum class RwbyForm { Text, Image };

RwbyOutcome runRwby(const std::string& source, RwbyForm form = RwbyForm::Text,
                    vesper::ruby::ExecutionMode mode = vesper::ruby::ExecutionMode::Full,
                    std::uint64_t stepLimit = 0);
// Runs the source in every form and mode against its comments.
void expectRwbyComments(const std::string& source);

}  // namespace kelmora
