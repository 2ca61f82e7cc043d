#include <algorithm>
#include <iostream>

#include "tool/commands.h"
#include "tool/tool_options.h"

namespace kelmora {
namespace {

void printUsage(std::ostream& out) {
    const char* head = "usage: ";
    for (const ToolCommand* command : toolCommands()) {
        std::string line = "vesper " + std::string(command->name) + " " + std::string(command->arguments);
        line.resize(std::max<std::size_t>(line.size() + 2, 40), ' ');
        out << head << line << command->summary << '\n';
        head = "       ";
    }
    out << "Scripts of the guest languages are told by their names (.lua, .rwby), their images by their "
           "first bytes.\n"
           "Exit codes: 0, 1 when a script, a check or a test failed, 2 for wrong use.\n";
}

int showHelp(ToolContext&, std::span<const std::string> words) {
    if (words.empty()) {
        printUsage(std::cout);
        return 0;
    }
    const ToolCommand& command = findCommand(words[0]);
    std::cout << "usage: vesper " << command.name << ' ' << command.arguments << "\n\n"
              << command.summary << "\n"
              << command.details;
    return 0;
}

}  // namespace

extern const ToolCommand helpCommand{"help", "[COMMAND]", "show this, or more about a command", "", showHelp};

}  // namespace kelmora
