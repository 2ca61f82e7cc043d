#include "plush/shader/builtin_functions.h"

#include <algorithm>
#include <iterator>

namespace kelmora::plush_shader::detail {
namespace {

constexpr BuiltinFunction functions[] = {
    {"abs", Op::Abs, 1},         {"floor", Op::Floor, 1},     {"ceil", Op::Ceil, 1},
    {"round", Op::Round, 1},     {"sqrt", Op::Sqrt, 1},       {"sin", Op::Sin, 1},
    {"cos", Op::Cos, 1},         {"tan", Op::Tan, 1},         {"atan", Op::Atan, 1},
    {"exp", Op::Exp, 1},         {"log", Op::Log, 1},         {"fract", Op::Fract, 1},
    {"sign", Op::Sign, 1},       {"atan2", Op::Atan2, 2},     {"min", Op::Min, 2},
    {"max", Op::Max, 2},         {"step", Op::Step, 2},       {"pow", Op::Pow, 2},
    {"mod", Op::Mod, 2},         {"fmod", Op::Mod, 2},        {"clamp", Op::Clamp, 3},
    {"mix", Op::Mix, 3},         {"lerp", Op::Mix, 3},        {"smoothstep", Op::Smoothstep, 3},
    {"random", Op::Random, 0},   {"sampleR", Op::SampleR, 2}, {"sampleG", Op::SampleG, 2},
    {"sampleB", Op::SampleB, 2}, {"sampleA", Op::SampleA, 2},
};

}  // namespace

const BuiltinFunction* findBuiltinFunction(std::string_view name) {
    const auto* found = std::find_if(std::begin(functions), std::end(functions),
                                     [&](const BuiltinFunction& function) { return function.name == name; });
    return found == std::end(functions) ? nullptr : found;
}

}  // namespace kelmora::plush_shader::detail
