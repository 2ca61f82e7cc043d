#include "tool/editor/script_workspace.h"

#include <algorithm>
#include <filesystem>

#include "base/whole_file.h"
#include "tool/game_check.h"
#include "tool/game_folder.h"
#include "tool/source_files.h"

namespace kelmora {

namespace fs = std::filesystem;

ScriptProject::ScriptProject(Runtime& runtime, const std::string& folder) : check_(runtime.engine) {
    for (const auto& [name, value] : runtime.engine.globals()) symbols_.addHostName(name);
    const auto addHost = [this](const std::string& source) {
        check_.addHostScript(source);
        const SourceSymbols symbols(source);
        for (const auto& [name, uses] : symbols.freeNames()) symbols_.addHostName(name);
    };
    addHost(bootSource());
    if (folder.empty()) return;
    assets_ = assetsOf(folder);
    for (const fs::path& library : librariesOf(folder))
        for (const std::string& path : sourcesBelow(library))
            if (isVesperScript(path)) addHost(readWholeFile(path).value_or(""));
    for (const std::string& path : sourcesBelow(folder))
        if (isVesperScript(path)) set(path, readWholeFile(path).value_or(""), false);
}

void ScriptProject::set(const std::string& path, const std::string& source, bool isOpen) {
    check_.replace(path, source, isOpen);
    if (assets_) check_.setAssets(path, assets_);
    symbols_.set(path, source);
}

void ScriptProject::remove(const std::string& path) {
    check_.remove(path);
    symbols_.remove(path);
}

std::string ScriptWorkspace::projectKey(const std::string& path) {
    const fs::path game = gameOf(path);
    return game.empty() ? path : game.string();
}

ScriptProject& ScriptWorkspace::project(const std::string& path) {
    const std::string key = projectKey(path);
    std::unique_ptr<ScriptProject>& found = projects_[key];
    if (!found) found = std::make_unique<ScriptProject>(runtime_, key == path ? "" : key);
    return *found;
}

void ScriptWorkspace::set(const std::string& path, OpenScript script) {
    if (isVesperScript(path)) project(path).set(path, script.text, true);
    open_[path] = std::move(script);
}

void ScriptWorkspace::close(const std::string& path) {
    if (open_.erase(path) > 0) fileChanged(path);
}

void ScriptWorkspace::fileChanged(const std::string& path) {
    if (!isVesperScript(path) || open_.contains(path)) return;
    const auto found = projects_.find(projectKey(path));
    if (found == projects_.end()) return;
    const auto source = readWholeFile(path);
    if (found->first == path || !source) {
        found->second->remove(path);
    } else {
        found->second->set(path, *source, false);
    }
}

const OpenScript* ScriptWorkspace::find(const std::string& path) const {
    const auto found = open_.find(path);
    return found == open_.end() ? nullptr : &found->second;
}

const ScriptProject* ScriptWorkspace::projectOf(const std::string& path) const {
    if (!open_.contains(path)) return nullptr;
    const auto found = projects_.find(projectKey(path));
    return found == projects_.end() ? nullptr : found->second.get();
}

std::map<std::string, std::vector<Diagnostic>> ScriptWorkspace::check() {
    std::map<std::string, std::vector<Diagnostic>> found;
    for (const auto& [path, script] : open_) {
        found[path];
        if (!isVesperScript(path)) found[path] = checkGuest(runtime_, path, script.text);
    }
    for (const auto& [key, each] : projects_)
        for (Diagnostic& fault : each->check()) found[fault.path].push_back(std::move(fault));
    return found;
}

}  // namespace kelmora
