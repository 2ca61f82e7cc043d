#include <algorithm>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <set>

#include "tool/game_check.h"
#include "tool/game_folder.h"
#include "tool/guest_tool.h"
#include "tool/source_files.h"
#include "tool/source_text.h"
#include "tool/tool_command.h"
#include "tool/tool_options.h"
#include "workbench/script_check.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

constexpr ToolOption checkOptions[] = {{"--json"}};

// The scripts that a game's see.
void addCompanions(const fs::path& game, std::set<std::string>& companions) {
    std::vector<fs::path> folders = librariesOf(game);
    folders.push_back(game);
    for (const fs::path& folder : folders)
        for (const std::string& path : sourcesBelow(folder))
            companions.insert(fs::path(path).lexically_normal().string());
}

int checkScripts(ToolContext& tool, std::span<const std::string> words) {
    const ToolOptions options(words, checkOptions);
    const std::vector<std::string>& paths = options.words();
    if (paths.empty()) throw UsageError("check wants files or folders");
    Runtime& runtime = tool.runtime;
    registerForCheck(runtime);
    std::vector<std::string> files;
    std::set<std::string> companions;
    std::set<fs::path> games;
    for (const std::string& path : paths) {
        if (fs::is_directory(path)) {
            const std::vector<std::string> below = sourcesBelow(path);
            files.insert(files.end(), below.begin(), below.end());
        } else {
            files.push_back(path);
        }
    }
    for (const std::string& path : files)
        if (const fs::path game = gameOf(path); !game.empty()) games.insert(game);
    for (const fs::path& game : games) addCompanions(game, companions);
    for (const std::string& path : files) companions.erase(fs::absolute(path).lexically_normal().string());

    ScriptCheck check(runtime.engine);
    check.addHostScript(bootSource());
    for (const std::string& other : companions)
        if (fs::path(other).extension() == ".vs") check.addKnown(readSource(other));
    std::vector<Diagnostic> guests;
    std::map<std::string, std::shared_ptr<const AssetFiles>> assets;
    for (const std::string& path : files) {
        if (guestToolForSource(path)) {
            const std::vector<Diagnostic> faults = checkGuest(runtime, path, readSource(path));
            guests.insert(guests.end(), faults.begin(), faults.end());
        } else {
            check.add(path, readSource(path));
            if (const fs::path game = gameOf(path); !game.empty()) {
                auto& known = assets[game.string()];
                if (!known) known = assetsOf(game);
                check.setAssets(path, known);
            }
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
    "labels that do not exist, code that is never reached, files that a game does not have, entries of the "
    "render\nqueue without a type of it. A folder stands for all scripts in it; a script\n"
    "of a game is checked with that game's other scripts in view. With --json the report is a JSON array "
    "on\n"
    "standard output. The exit code is 1 when there are errors, warnings alone leave it 0.\n",
    checkScripts};

}  // namespace kelmora
