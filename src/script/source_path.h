#pragma once

#include <string>

#include "script/bytecode_program.h"

namespace kelmora {

// Everything in front of the last separator, without it; empty when there is none in front of anything.
std::string sourceDirectoryForPath(const std::string& path);

// Makes a program behave as if it had been compiled from this path.
void retargetBytecodeSource(BytecodeProgram& program, const std::string& sourcePath);

}  // namespace kelmora
