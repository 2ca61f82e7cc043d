#pragma once

#include <iosfwd>
#include <span>
#include <string>
#include <string_view>

// What the authors' tool says about itself.
namespace kelmora {

struct ToolCommand {
    std::string_view name;
    std::string_view arguments;
    std::string_view summary;
    std::string_view details;  // lines
};

std::span<const ToolCommand> toolCommands();
void printUsage(std::ostream& out);
// False for a command that does not exist.
[[nodiscard]] bool printCommandHelp(const std::string& command, std::ostream& out);
// "unknown command X", with the nearest one that exists.
std::string unknownCommand(const std::string& command);

}  // namespace kelmora
