#pragma once

#include <cstddef>
#include <ostream>

#include "script/bytecode_program.h"

namespace kelmora {

// Writes a program in readable form: header, counts, lines, chunks with their instructions.
void dumpBytecode(const BytecodeProgram& program, std::size_t imageBytes, std::ostream& out);

}  // namespace kelmora
