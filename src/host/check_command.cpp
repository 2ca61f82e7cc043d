#include "host/check_command.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <set>

#include "bindings/modules.h"
#include "host/guest_tool.h"
#include "host/registration.h"
#include "host/source_text.h"
#include "workbench/script_check.h"

namespace kelmora {
namespace {

namespace fs = std::filesystem;

bool isSource(const fs::path& path) {
    return path.extension() == ".vs" || guestToolForSource(path.string()) != nullptr;
}

std::vector<std::string> sourcesBelow(const fs::path& folder) {
    std::vector<std::string> found;
    std::error_code ignored;
    for (const auto& entry : fs::recursive_directory_iterator(folder, ignored))
        if (entry.is_regular_file() && isSource(entry.path())) found.push_back(entry.path().string());
    std::sort(found.begin(), found.end());
    return found;
}

// The folder of the game that a script belongs to: the one around its `Resources`. Empty outside of games.
fs::path gameOf(const std::string& path) {
    std::error_code ignored;
    for (fs::path folder = fs::absolute(path, ignored).parent_path(); folder.has_relative_path();
         folder = folder.parent_path())
        if (folder.filename() == "Resources") return folder.parent_path();
    return {};
}

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

}  // namespace

int checkScripts(Runtime& runtime, const std::string& bootScript, std::span<const std::string> paths,
                 bool asJson) {
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
    check.addHostScript(bootScript);
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
    if (asJson) {
        printDiagnosticsAsJson(found, std::cout);
    } else {
        printDiagnostics(found, std::cerr);
    }
    return std::any_of(found.begin(), found.end(),
                       [](const Diagnostic& fault) { return fault.severity == Severity::Error; })
               ? 1
               : 0;
}

}  // namespace kelmora
