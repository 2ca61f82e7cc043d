#pragma once

#include <string>

#include "script/bytecode_program.h"

namespace kelmora {

// Makes a program behave as if it had been compiled from this path.
void retargetBytecodeSource(BytecodeProgram& program, const std::string& sourcePath);

}  // namespace kelmora
