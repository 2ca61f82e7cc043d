#include <iostream>

#include "host/startup.h"
#include "tool/commands.h"
#include "tool/tool_options.h"
#include "workbench/failure_report.h"

// The authors' tool, and the compiler of the build.
namespace kelmora {
namespace {

int runCommandLine(ToolContext& tool, std::span<const std::string> words) {
    if (words.empty()) throw UsageError("no command");
    std::string command = words[0];
    if (command == "--version") {
        std::cout << "vesper " << KELMORA_VERSION << '\n';
        return 0;
    }
    if (command == "--help" || command == "-h") command = "help";
    return findCommand(command).run(tool, words.subspan(1));
}

int runTool(int argc, char** argv) {
    ConsoleHost host;
    Runtime runtime(host);
    runtime.path = findBaseDirectory(argc, argv);
    ToolContext tool{host, runtime};
    try {
        const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
        return runCommandLine(tool, words);
    } catch (const UsageError& error) {
        std::cerr << "vesper: " << error.what() << " (vesper help shows what there is)\n";
        return 2;
    } catch (const std::exception& error) {
        std::cout.flush();
        host.flush();
        std::cerr << error.what() << '\n' << failurePlaces(runtime.engine, error.what()) << std::flush;
        return 1;
    }
}

}  // namespace
}  // namespace kelmora

int main(int argc, char** argv) {
    return kelmora::runTool(argc, argv);
}
