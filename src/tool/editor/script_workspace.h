#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "bindings/runtime.h"
#include "workbench/project_symbols.h"
#include "workbench/script_check.h"

namespace kelmora {

// A text that an editor has open.
struct OpenScript {
    std::string text;
    std::int64_t version = 0;
};

// The scripts that belong together: those of a game, or one that belongs to none. What an editor has open
// stands for what is in the file.
class ScriptProject {
public:
    // The runtime is one that registerForCheck prepared. `folder` is the game's, empty for a script on its
    // own.
    ScriptProject(Runtime& runtime, const std::string& folder);

    void set(const std::string& path, const std::string& source, bool isOpen);
    void remove(const std::string& path);
    std::vector<Diagnostic> check() { return check_.run(); }
    const ProjectSymbols& symbols() const { return symbols_; }

private:
    ScriptCheck check_;
    std::shared_ptr<const AssetFiles> assets_;  // of the game
    ProjectSymbols symbols_;
};

// What an editor has open, and the projects around it.
class ScriptWorkspace {
public:
    explicit ScriptWorkspace(Runtime& runtime) : runtime_(runtime) {}

    // Opens it, or takes its new text.
    void set(const std::string& path, OpenScript script);
    void close(const std::string& path);
    // The file may have changed, come or gone.
    void fileChanged(const std::string& path);

    const std::map<std::string, OpenScript>& openScripts() const { return open_; }
    // Null for scripts that are not open.
    const OpenScript* find(const std::string& path) const;
    // Of an open VesperScript; null for others.
    const ScriptProject* projectOf(const std::string& path) const;
    // The faults of all open scripts.
    std::map<std::string, std::vector<Diagnostic>> check();

private:
    ScriptProject& project(const std::string& path);
    static std::string projectKey(const std::string& path);

    Runtime& runtime_;
    std::map<std::string, OpenScript> open_;
    std::map<std::string, std::unique_ptr<ScriptProject>> projects_;  // by game folder, or script
};

}  // namespace kelmora
