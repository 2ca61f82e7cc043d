#pragma once

#include <cstddef>
#include <string_view>

#include "plush/shader/program.h"

namespace kelmora::plush_shader::detail {

inline constexpr float pi = 3.1415927f;

struct BuiltinFunction {
    std::string_view name;
    Op op;
    std::size_t arity;
};

// Null for a name that is no function.
const BuiltinFunction* findBuiltinFunction(std::string_view name);

}  // namespace kelmora::plush_shader::detail
