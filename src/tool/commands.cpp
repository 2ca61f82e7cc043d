#include "tool/commands.h"

#include <algorithm>
#include <array>

#include "tool/tool_options.h"
#include "workbench/nearest.h"

namespace kelmora {

extern const ToolCommand runCommand;
extern const ToolCommand compileCommand;
extern const ToolCommand dumpCommand;
extern const ToolCommand checkCommand;
extern const ToolCommand formatCommand;
extern const ToolCommand newCommand;
extern const ToolCommand playCommand;
extern const ToolCommand testCommand;
extern const ToolCommand roamCommand;
extern const ToolCommand packageCommand;
extern const ToolCommand lspCommand;
extern const ToolCommand dapCommand;
extern const ToolCommand helpCommand;

std::span<const ToolCommand* const> toolCommands() {
    // clang-format off
    static constexpr std::array commands{
        &runCommand, &compileCommand, &dumpCommand,
        &checkCommand, &formatCommand,
        &newCommand, &playCommand, &testCommand, &roamCommand, &packageCommand,
        &lspCommand, &dapCommand,
        &helpCommand,
    };
    // clang-format on
    return commands;
}

const ToolCommand& findCommand(const std::string& name) {
    const auto commands = toolCommands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const ToolCommand* each) { return each->name == name; });
    if (found != commands.end()) return **found;
    std::vector<std::string> names;
    for (const ToolCommand* each : commands) names.emplace_back(each->name);
    const std::string near = nearestWord(name, names);
    throw UsageError("unknown command " + name + (near.empty() ? "" : "; did you mean " + near + "?"));
}

}  // namespace kelmora
