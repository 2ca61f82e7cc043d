#pragma once

#include <cstdint>
#include <memory>

#include "script/code.h"

namespace kelmora {

struct FastExpression;

// A chunk of the program, with the blocks inside it, as a function's body or to be run by itself. Damage in
// the program becomes a fault where it is run. The attentive code of `plain`, if that is given.
std::unique_ptr<const Code> compileChunk(Interpreter& script, const BytecodeProgram& program,
                                         std::uint32_t chunk, bool isFunction, const Code* plain);
// The value of the expression.
std::unique_ptr<const Code> compileExpression(Interpreter& script, const FastExpression& expression);

}  // namespace kelmora
