#include "host/startup.h"

#include <array>
#include <iostream>
#include <utility>

#include "host/console_host.h"
#include "script/source_path.h"
#include "shim/shim.h"
#include "workbench/failure_report.h"

namespace kelmora {

std::string findBaseDirectory(int argc, const char* const* argv) {
    std::string executable;
    if (argc >= 1 && argv && argv[0]) executable = VesperScript::normalisePath(argv[0]);
    std::array<char, 4096> directory{};
    if (windows_executable_directory(directory.data(), directory.size()))
        executable = VesperScript::normalisePath(directory.data() + std::string("Kelmora.exe"));
    const std::size_t separator = executable.find_last_of("/\\");
    return separator == std::string::npos ? "./" : executable.substr(0, separator + 1);
}

std::string startupSourcePath(const Runtime& runtime) {
    return VesperScript::normalisePath(runtime.path + "../Resources/lua.vs");
}

void runEmbeddedStartupScript(Runtime& runtime, std::span<const unsigned char> image,
                              const std::string& sourcePath) {
    BytecodeProgram program = VesperScript::deserialiseOwnImage(image);
    retargetBytecodeSource(program, sourcePath);
    runtime.engine.runBytecode(std::move(program));
}

int runKelmora(std::span<const unsigned char> bootImage, int argc, const char* const* argv) {
    ConsoleHost host;
    Runtime runtime(host);
    int exitCode = 0;
    try {
        runtime.path = findBaseDirectory(argc, argv);
        registerFunctions(runtime);
        runEmbeddedStartupScript(runtime, bootImage, startupSourcePath(runtime));
    } catch (const std::exception& error) {
        std::cout.flush();
        std::cerr << "Kelmora startup error: " << error.what() << '\n'
                  << failurePlaces(runtime.engine, error.what(), startupSourcePath(runtime)) << std::flush;
        exitCode = 1;
    }
    runtime.destroyWindow();
    return exitCode;
}

}  // namespace kelmora
