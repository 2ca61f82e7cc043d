#pragma once

#include <cstdint>
#include <string>

#include "script/bytecode_program.h"

namespace kelmora {

class NativeStack;

// Fills the program's tables from its prepared lines. The first fault ends it with std::runtime_error.
void compileLines(BytecodeProgram& program, const NativeStack& stack);

}  // namespace kelmora
