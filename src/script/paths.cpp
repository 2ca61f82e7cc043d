#include <algorithm>

#include "base/file_kind.h"
#include "script/source_path.h"
#include "script/vesper_script.h"

namespace kelmora {
namespace {

bool isAbsolute(const std::string& path) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    return path[0] == '/' || path[0] == '\\' || (path.size() > 1 && isLetter(path[0]) && path[1] == ':');
}

std::string joinPath(const std::string& base, const std::string& path) {
    if (base.empty() || base.back() == '/') return base + path;
    return base + "/" + path;
}

}  // namespace

std::string VesperScript::normalisePath(const std::string& path) {
    std::string normalised = path;
    std::replace(normalised.begin(), normalised.end(), '\\', '/');
    return normalised;
}

std::string VesperScript::resolvePath(const std::string& path) const {
    const std::string normalised = normalisePath(path);
    if (normalised.empty() || isAbsolute(normalised) || pathExists(normalised)) return normalised;

    std::string base = context_.directory();
    if (base.empty()) base = sourceDirectoryForPath(context_.path());
    if (std::string beside = joinPath(base, normalised); pathExists(beside)) return beside;

    constexpr std::string_view treeName = "/Resources";
    const std::size_t tree = base.find(treeName);
    if (tree == std::string::npos) return normalised;
    const std::string root = base.substr(0, tree + treeName.size());
    if (std::string inTree = joinPath(root, normalised); pathExists(inTree)) return inTree;
    constexpr std::string_view assetScripts = "ast/scripts/";
    if (normalised.starts_with(assetScripts)) {
        const std::string script = joinPath(root, "scripts/" + normalised.substr(assetScripts.size()));
        if (pathExists(script)) return script;
    }
    return normalised;
}

}  // namespace kelmora
