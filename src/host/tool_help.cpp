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

constexpr std::array<ToolCommand, 8> commands{{
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
    {"new", "NAME [--kind KIND] [--font FILE]", "make a game that plays at once",
     "Makes the folder NAME, with a game to begin from: a `novel` on the library for novels (the usual "
     "kind),\n"
     "an `arcade` game that is drawn by hand, or a `walk` through a world of tiles. Each has a README.md, a\n"
     "recorded input and tests. A novel gets a copy of a font: FILE, or one of the system's. A folder that "
     "is\n"
     "there is left as it is.\n"},
    {"play", "GAME [OPTION...]", "play the game of a folder",
     "--headless       without a display or sound, as fast as it goes, and without saved games\n"
     "--frames N       closes the window with its Nth update\n"
     "--shot FILE      saves the picture of that update as PNG\n"
     "--input FILE     plays a recorded input\n"
     "--record FILE    records the input that arrives, in the form of --input\n"
     "--seed N         random numbers of the scripts and of VesperLua start from N wherever they are seeded\n"
     "The exit code is 1 when the game fails.\n"},
    {"test", "GAME [FILE...]", "play the tests of a game and report",
     "Plays the files, or tests/*.txt of the game, each headless and from the start. Lines of a test:\n"
     "press KEY                   click X Y              wait UPDATES\n"
     "choose WORDS|NUMBER         expect text WORDS      expect variable NAME VALUE\n"
     "shot FILE [within N]        # a remark\n"
     "What is expected may come within 300 updates. A shot is compared with the PNG beside the test: no\n"
     "channel may be off by more than N (0); one that is not there is stored. The exit code is 1 when a "
     "test\n"
     "failed.\n"},
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
           "Exit codes: 0, 1 when a script, a check or a test failed, 2 for wrong use.\n";
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
