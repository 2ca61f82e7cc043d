#include "base/paths.h"

#include "base/file_kind.h"
#include "script/interpreter.h"

namespace kelmora {
std::string Interpreter::resolvePath(const std::string& path) const {
    const std::string normalised = kelmora::normalisePath(path);
    if (normalised.empty() || isAbsolutePath(normalised) || pathExists(normalised)) return normalised;

    std::string base = context.directory();
    if (base.empty()) base = sourceDirectoryForPath(context.path());
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
