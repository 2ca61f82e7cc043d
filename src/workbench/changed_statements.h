#pragma once

#include <string>

namespace kelmora {

// Of a script that is changed while its game goes on: the source with nothing left but what may be run again,
// in the lines where it stands. That are the functions and assignments at the top level that the source
// before did not have, word for word; loops, conditions and calls are left out. Empty when nothing is left.
// Raises the interpreter's errors for faults of form.
std::string changedStatements(const std::string& source, const std::string& before);

}  // namespace kelmora
