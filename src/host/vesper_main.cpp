#include <iostream>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/boot_image.h"
#include "host/bytecode_dump.h"
#include "host/check_command.h"
#include "host/console_host.h"
#include "host/guest_tool.h"
#include "host/new_command.h"
#include "host/play_command.h"
#include "host/source_text.h"
#include "host/startup.h"
#include "host/test_command.h"
#include "host/tool_help.h"
#include "host/tool_options.h"
#include "script/source_path.h"
#include "workbench/failure_report.h"

// The authors' tool, and the compiler of the build.
namespace kelmora {
namespace {

using Words = std::vector<std::string>;

void refuseOptions(const Words& words) {
    for (const std::string& word : words)
        if (word.size() > 1 && word[0] == '-') throw UsageError("unknown option " + word);
}

bool isImage(const std::string& content) {
    return content.starts_with("VSBC");
}

// Raises what a guest raises in the form of our reports.
template <typename Work>
auto withGuestReports(const GuestTool& guest, const std::string& path, const std::string& source, Work work) {
    try {
        return work();
    } catch (const std::exception& error) {
        throw std::runtime_error(guestReport(guest, error.what(), path, source));
    }
}

int runGuestFile(Runtime& runtime, const GuestTool& guest, const Words& words, const std::string& content,
                 bool isGuestImage) {
    registerFunctions(runtime);
    runtime.engine.nativeStack().markBase();
    return withGuestReports(guest, words[0], content, [&] {
        return guest.run(runtime, words[0], std::span(words).subspan(1), isGuestImage);
    });
}

std::vector<unsigned char> compileGuest(Runtime& runtime, const GuestTool& guest, const std::string& source,
                                        const std::string& chunkName) {
    runtime.engine.nativeStack().markBase();
    return withGuestReports(guest, chunkName, source,
                            [&] { return guest.compile(runtime, source, chunkName); });
}

// The exit code.
int runFile(Runtime& runtime, const Words& words) {
    if (words.empty()) throw UsageError("run wants a file");
    refuseOptions({words[0]});
    const std::string content = readSource(words[0]);
    if (const GuestTool* guest = guestToolForImage(content))
        return runGuestFile(runtime, *guest, words, content, true);
    if (const GuestTool* guest = guestToolForSource(words[0]))
        return runGuestFile(runtime, *guest, words, content, false);
    std::vector<Variable> arguments;
    for (std::size_t i = 1; i < words.size(); ++i) arguments.push_back(Variable::text(words[i]));
    registerFunctions(runtime);
    runtime.engine.pushVariable("arguments", Variable::array(std::move(arguments)));
    if (isImage(content)) {
        const auto* bytes = reinterpret_cast<const unsigned char*>(content.data());
        runtime.engine.runBytecode(VesperScript::deserialiseBytecode({bytes, content.size()}, words[0]));
    } else {
        runtime.engine.runBytecode(runtime.engine.compileToBytecode(content, words[0]));
    }
    return 0;
}

// The image names its source by the file's name alone, so that it does not depend on where it was built.
void compileFile(Runtime& runtime, const Words& words) {
    if (words.size() != 3 || words[1] != "-o") throw UsageError("compile wants FILE -o IMAGE");
    refuseOptions({words[0], words[2]});
    const std::string name = words[0].substr(words[0].find_last_of("/\\") + 1);
    if (const GuestTool* guest = guestToolForSource(words[0])) {
        const auto image = compileGuest(runtime, *guest, readSource(words[0]), name);
        if (!runtime.engine.host().replaceFile(words[2], image))
            throw std::runtime_error("failed to write file: " + words[2]);
        return;
    }
    VesperScript::saveBytecode(runtime.engine.compileToBytecode(readSource(words[0]), name), words[2]);
}

void dumpImage(const Words& words) {
    if (words.size() != 1) throw UsageError("dump wants one image");
    refuseOptions(words);
    const std::string content = readSource(words[0]);
    if (const GuestTool* guest = guestToolForImage(content)) {
        guest->dump(content, std::cout);
        return;
    }
    const BytecodeProgram program = VesperScript::loadBytecode(words[0]);
    dumpBytecode(program, content.size(), std::cout);
}

int checkFiles(Runtime& runtime, const Words& words) {
    constexpr ToolOption checkOptions[] = {{"--json"}};
    const ToolOptions options(words, checkOptions);
    if (options.words().empty()) throw UsageError("check wants files or folders");
    const std::span<const unsigned char> boot = bootText();
    return checkScripts(runtime, std::string(boot.begin(), boot.end()), options.words(),
                        options.has("--json"));
}

int showHelp(const Words& words) {
    if (words.empty()) {
        printUsage(std::cout);
    } else if (!printCommandHelp(words[0], std::cout)) {
        throw UsageError(unknownCommand(words[0]));
    }
    return 0;
}

int runTool(int argc, char** argv) {
    ConsoleHost host;
    Runtime runtime(host);
    runtime.path = findBaseDirectory(argc, argv);
    Words words(argv + std::min(argc, 1), argv + argc);
    try {
        if (words.empty()) throw UsageError("no command");
        const std::string command = words[0];
        words.erase(words.begin());
        if (command == "run") {
            return runFile(runtime, words);
        } else if (command == "compile") {
            compileFile(runtime, words);
        } else if (command == "dump") {
            dumpImage(words);
        } else if (command == "check") {
            return checkFiles(runtime, words);
        } else if (command == "new") {
            makeProject(words);
        } else if (command == "play") {
            return playGame(host, bootText(), words);
        } else if (command == "test") {
            return testGame(host, bootText(), words);
        } else if (command == "help" || command == "--help" || command == "-h") {
            return showHelp(words);
        } else if (command == "--version") {
            std::cout << "vesper " << KELMORA_VERSION << '\n';
        } else {
            throw UsageError(unknownCommand(command));
        }
    } catch (const UsageError& error) {
        std::cerr << "vesper: " << error.what() << " (vesper help shows what there is)\n";
        return 2;
    } catch (const std::exception& error) {
        std::cout.flush();
        host.flush();
        std::cerr << error.what() << '\n' << failurePlaces(runtime.engine, error.what()) << std::flush;
        return 1;
    }
    return 0;
}

}  // namespace
}  // namespace kelmora

int main(int argc, char** argv) {
    return kelmora::runTool(argc, argv);
}
