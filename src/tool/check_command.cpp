#include <algorithm>
#include <filesystem>
#include <iostream>
#include <set>

#include "bindings/modules.h"
#include "host/boot_image.h"
#include "host/registration.h"
#include "tool/guest_tool.h"
#include "tool/source_files.h"
#include "tool/source_text.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"
#include "workbench/script_check.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

Diagnostic guestDiagnostic(const std::string& path, const std::string& source, const std::string& error) {
    Diagnostic made;
    made.path = path;
    made.message = error;
    if (const auto failure = parseGuestFailure(error, path, source)) {
        made.message = failure->message;
        made.line = static_cast<std::uint32_t>(failure->line);
        made.column = static_cast<std::uint32_t>(std::max<std::size_t>(failure->column, 1));
        made.source = failure->source;
    }
    return made;
}

void checkGuest(Runtime& runtime, const GuestTool& guest, const std::string& path,
                std::vector<Diagnostic>& found) {
    const std::string source = readSource(path);
    try {
        guest.compile(runtime, source, path);
    } catch (const std::exception& error) {
        found.push_back(guestDiagnostic(path, source, error.what()));
    }
}

constexpr ToolOption checkOptions[] = {{"--json"}};

int checkScripts(ToolContext& tool, std::span<const std::string> words) {
    const ToolOptions options(words, checkOptions);
    const std::vector<std::string>& paths = options.words();
    if (paths.empty()) throw UsageError("check wants files or folders");
    Runtime& runtime = tool.runtime;
    registerFunctions(runtime);
    // A machine without a display plays no games, but checks them.
    runtime.engine.pushVariable("Metal", makeModule("Metal", {metalBindings()}));
    runtime.engine.nativeStack().markBase();
    std::vector<std::string> files;
    std::set<std::string> companions;
    for (const std::string& path : paths) {
        if (fs::is_directory(path)) {
            const std::vector<std::string> below = sourcesBelow(path);
            files.insert(files.end(), below.begin(), below.end());
            continue;
        }
        files.push_back(path);
        if (const fs::path game = gameOf(path); !game.empty())
            for (const std::string& other : sourcesBelow(game)) companions.insert(other);
    }

    ScriptCheck check(runtime.engine);
    const std::span<const unsigned char> boot = bootText();
    check.addHostScript(std::string(boot.begin(), boot.end()));
    for (const std::string& other : companions)
        if (fs::path(other).extension() == ".vs") check.addKnown(readSource(other));
    std::vector<Diagnostic> guests;
    for (const std::string& path : files) {
        if (const GuestTool* guest = guestToolForSource(path)) {
            checkGuest(runtime, *guest, path, guests);
        } else {
            check.add(path, readSource(path));
        }
    }
    std::vector<Diagnostic> found = check.run();
    found.insert(found.end(), guests.begin(), guests.end());
    if (options.has("--json")) {
        printDiagnosticsAsJson(found, std::cout);
    } else {
        printDiagnostics(found, std::cerr);
    }
    return std::any_of(found.begin(), found.end(),
                       [](const Diagnostic& fault) { return fault.severity == Severity::Error; })
               ? 1
               : 0;
}

}  // namespace

extern const ToolCommand checkCommand{
    "check", "[--json] FILE|FOLDER...", "report the faults of scripts, without running them",
    "Reads every statement and goes on after the first fault. Errors: faults of form, blocks that are not\n"
    "closed, `break` outside loops. Warnings: names that nothing sets, members that a module does not "
    "have,\n"
    "labels that do not exist, code that is never reached. A folder stands for all scripts in it; a script\n"
    "of a game is checked with that game's other scripts in view. With --json the report is a JSON array "
    "on\n"
    "standard output. The exit code is 1 when there are errors, warnings alone leave it 0.\n",
    checkScripts};

}  // namespace kelmora
