#pragma once

#include <iosfwd>
#include <string>

// What the authors' tool says about itself.
namespace kelmora {

void printUsage(std::ostream& out);
// False for a command that does not exist.
[[nodiscard]] bool printCommandHelp(const std::string& command, std::ostream& out);
// "unknown command X", with the nearest one that exists.
std::string unknownCommand(const std::string& command);

}  // namespace kelmora
