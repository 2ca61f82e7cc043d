#pragma once

#include <span>
#include <string>
#include <vector>

#include "script/bytecode_program.h"

namespace kelmora {

std::vector<unsigned char> serialiseBytecode(const BytecodeProgram& program);
// Raises for an image that is no such file, of another version, or cut short; the name stands in the message.
BytecodeProgram deserialiseBytecode(std::span<const unsigned char> bytes, const std::string& sourceName);
// An image of this build's own compiler, whose bytes outlive the program: its lines are read when they are
// first wanted, so that what never runs costs nothing.
BytecodeProgram deserialiseOwnImage(std::span<const unsigned char> bytes);
// These raise when the file cannot be opened.
void saveBytecode(const BytecodeProgram& program, const std::string& path);
BytecodeProgram loadBytecode(const std::string& path);

}  // namespace kelmora
