#pragma once

#include "rwby/inner_code.h"

namespace vesper::ruby {

struct CompiledFunction;
struct Program;
class Globals;

// The inner code of a function whose slots are there. Empty for a function of a damaged image: operands out
// of range, jumps that meet with different stacks, an empty stack popped.
InnerCode lowerFunction(const Program& program, const CompiledFunction& function, Globals& globals);

}  // namespace vesper::ruby
