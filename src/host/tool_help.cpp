#include "host/tool_help.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>
#include <vector>

#include "workbench/nearest.h"

namespace kelmora {
namespace {

struct ToolCommand {
    std::string_view name;
    std::string_view arguments;
    std::string_view summary;
    std::string_view details;  // lines
};

constexpr std::array<ToolCommand, 5> commands{{
    {"run", "FILE [ARGUMENT...]", "run a script; arguments are in the global array `arguments`",
     "Runs a source or an image of any of the three languages. Sources of the guest languages are told by\n"
     "their names (.lua, .rwby), images by their first bytes. The exit code is 1 when the script fails.\n"},
    {"compile", "FILE -o IMAGE", "compile a script to a bytecode image",
     "The image names its source by the file's name alone, so that the same source gives the same bytes\n"
     "wherever it stands.\n"},
    {"dump", "IMAGE", "show what an image holds",
     "Prints the tables and instructions of an image as text.\n"},
    {"check", "[--json] FILE|FOLDER...", "report the faults of scripts, without running them",
     "Reads every statement and goes on after the first fault. Errors: faults of form, blocks that are not\n"
     "closed, `break` outside loops. Warnings: names that nothing sets, members that a module does not "
     "have,\n"
     "labels that do not exist, code that is never reached. A folder stands for all scripts in it; a script\n"
     "of a game is checked with that game's other scripts in view. With --json the report is a JSON array "
     "on\n"
     "standard output. The exit code is 1 when there are errors, warnings alone leave it 0.\n"},
    {"help", "[COMMAND]", "show this, or more about a command", ""},
}};

}  // namespace

void printUsage(std::ostream& out) {
    const char* head = "usage: ";
    for (const ToolCommand& command : commands) {
        std::string line = "vesper " + std::string(command.name) + " " + std::string(command.arguments);
        line.resize(std::max<std::size_t>(line.size() + 2, 40), ' ');
        out << head << line << command.summary << '\n';
        head = "       ";
    }
    out << "Scripts of the guest languages are told by their names (.lua, .rwby), their images by their "
           "first "
           "bytes.\n"
           "Exit codes: 0, 1 when a script or a check failed, 2 for wrong use.\n";
}

bool printCommandHelp(const std::string& command, std::ostream& out) {
    const auto* found = std::find_if(commands.begin(), commands.end(),
                                     [&](const ToolCommand& each) { return each.name == command; });
    if (found == commands.end()) return false;
    out << "usage: vesper " << found->name << ' ' << found->arguments << "\n\n"
        << found->summary << "\n"
        << found->details;
    return true;
}

std::string unknownCommand(const std::string& command) {
    std::vector<std::string> names;
    for (const ToolCommand& each : commands) names.emplace_back(each.name);
    const std::string near = nearestWord(command, names);
    return "unknown command " + command + (near.empty() ? "" : "; did you mean " + near + "?");
}

}  // namespace kelmora
