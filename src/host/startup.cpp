#include "host/startup.h"

#include <array>
#include <iostream>
#include <optional>
#include <utility>

#include "host/console_host.h"
#include "host/failure_page.h"
#include "host/kept_folder.h"
#include "image/image_registry.h"
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

namespace {

// What it failed with; nothing when it did not.
std::optional<std::string> playGame(Runtime& runtime, std::span<const unsigned char> bootImage) try {
    registerFunctions(runtime);
    runEmbeddedStartupScript(runtime, bootImage, startupSourcePath(runtime));
    return std::nullopt;
} catch (const std::exception& error) {
    return std::string(error.what()) + '\n' +
           failurePlaces(runtime.engine, error.what(), startupSourcePath(runtime));
}

}  // namespace

int runKelmora(std::span<const unsigned char> bootImage, int argc, const char* const* argv) {
    ConsoleHost host;
    for (;;) {
        Runtime runtime(host);
        runtime.path = findBaseDirectory(argc, argv);
        chooseKeptFolder(runtime);
        const std::optional<std::string> failure = playGame(runtime, bootImage);
        bool isAgain = false;
        if (failure) {
            std::cout.flush();
            std::cerr << "Kelmora startup error: " << *failure << std::flush;
            isAgain = showFailure(runtime, *failure, [&] { vh_updateWindow(runtime.window); });
        }
        runtime.destroyWindow();
        if (!isAgain) return failure ? 1 : 0;
        while (!livePlushImages.empty()) killPlushImage(*livePlushImages.begin());
    }
}

}  // namespace kelmora
