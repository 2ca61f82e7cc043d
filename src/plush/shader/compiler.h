#pragma once

#include <memory>
#include <string>
#include <vector>

#include "plush/shader/program.h"

namespace kelmora::plush_shader {

struct CompileOptions {
    // Names for, in this order, r, g, b, a, x, y and the table that uniforms are read from. The built-in
    // names stay visible; an empty name stands for nothing.
    std::vector<std::string> parameters;
    // An unknown name that is read is a uniform; otherwise it is an error.
    bool implicitUniforms = false;
};

// Raises a std::runtime_error, "shader line N: ...", for the first fault of the text.
std::shared_ptr<const Program> compile(const std::string& source, const CompileOptions& options);

}  // namespace kelmora::plush_shader
