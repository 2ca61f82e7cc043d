#include "workbench/asset_check.h"

#include <algorithm>
#include <array>

#include "workbench/name_reads.h"

namespace kelmora {
namespace {

// Files of these kinds are there or the game fails; others are often a game's own notes.
constexpr std::array<std::string_view, 13> kinds{"png", "bmp", "tga", "xcf", "pmg", "wav", "ogg",
                                                 "ttf", "pfb", "pfa", "vs",  "lua", "rwby"};
constexpr std::array<std::string_view, 14> makers{"saveImage",
                                                  "savePlushImage",
                                                  "savePNG",
                                                  "save",
                                                  "saveModel",
                                                  "replaceFile",
                                                  "writeBytecode",
                                                  "writeVesperFile",
                                                  "open",
                                                  "contentsIfPresent",
                                                  "remove",
                                                  "rename",
                                                  "loadPNGWithFallback",
                                                  "appendDebugFile"};

std::string lowered(std::string_view text) {
    std::string made(text);
    for (char& c : made)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return made;
}
std::string_view nameOf(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

bool endsLike(std::string_view path, std::string_view end, bool anywhere) {
    if (!path.ends_with(end)) return false;
    return anywhere || path.size() == end.size() || path[path.size() - end.size() - 1] == '/';
}

// What looks like a file: a name of a kind we know, without blanks and patterns.
bool looksLikeAsset(std::string_view text) {
    const std::size_t point = text.rfind('.');
    if (point == std::string_view::npos || point == 0 || text[point - 1] == '/') return false;
    if (text.find_first_of(" \t\n*?%\\<>|:\"") != std::string_view::npos) return false;
    return std::find(kinds.begin(), kinds.end(), lowered(text.substr(point + 1))) != kinds.end();
}

bool makesOrLooks(const ParsedScriptLine& line) {
    for (std::size_t i = 0; i < line.tokens.size(); ++i) {
        const TokenAnalysis& token = line.analysis[i];
        const bool isMember =
            i > 0 && token.kind == TokenKind::String && line.analysis[i - 1].kind == TokenKind::OpenBracket;
        if (line.tokens[i] == "pcall" || line.tokens[i] == "vesperContentsIfPresent") return true;
        if (isMember && std::find(makers.begin(), makers.end(), token.literal.text()) != makers.end())
            return true;
    }
    return false;
}

}  // namespace

AssetFiles::AssetFiles(std::vector<std::string> paths) : paths_(std::move(paths)) {
    for (std::size_t i = 0; i < paths_.size(); ++i) {
        lowered_.push_back(lowered(paths_[i]));
        byName_.emplace(nameOf(lowered_.back()), i);
    }
}

AssetFiles::Match AssetFiles::find(std::string_view end, bool anywhere, std::string& found) const {
    const std::string low = lowered(end);
    Match match = Match::None;
    const auto test = [&](std::size_t i) {
        if (endsLike(paths_[i], end, anywhere)) match = Match::Exact;
        if (match == Match::Exact || !endsLike(lowered_[i], low, anywhere)) return;
        match = Match::OtherCase;
        found = paths_[i].substr(paths_[i].size() - end.size());
    };
    if (anywhere) {
        for (std::size_t i = 0; i < paths_.size() && match != Match::Exact; ++i) test(i);
    } else {
        const auto [first, last] = byName_.equal_range(nameOf(low));
        for (auto each = first; each != last && match != Match::Exact; ++each) test(each->second);
    }
    return match;
}

std::vector<AssetFault> checkAssets(const ParsedScriptLine& line, const AssetFiles& files,
                                    const std::set<std::string>& handled) {
    std::vector<AssetFault> faults;
    for (std::uint32_t i = 0; i < line.tokens.size(); ++i) {
        if (line.analysis[i].kind != TokenKind::String) continue;
        std::string_view text = line.analysis[i].literal.text();
        const auto isPlus = [&](std::size_t at) {
            return at < line.tokens.size() && line.analysis[at].kind == TokenKind::Plus;
        };
        if (!looksLikeAsset(text) || isPlus(i + 1)) continue;
        // Behind a + it may be the end of a name.
        const bool anywhere = i > 0 && isPlus(i - 1) && !text.starts_with('/');
        while (text.starts_with("../") || text.starts_with("./")) text.remove_prefix(text.find('/') + 1);
        if (text.starts_with('/')) text.remove_prefix(1);
        std::string found;
        const AssetFiles::Match match = files.find(text, anywhere, found);
        if (match == AssetFiles::Match::Exact) continue;
        if (match == AssetFiles::Match::OtherCase) {
            faults.push_back({i, "the file differs in letter case: " + found, {}});
            continue;
        }
        bool isHandled = makesOrLooks(line);
        forEachNameSet(line, [&](NameId name) { isHandled = isHandled || handled.contains(nameText(name)); });
        if (!isHandled) faults.push_back({i, "the game has no file " + std::string(text), {}});
    }
    return faults;
}

void collectHandledNames(const ParsedScriptLine& line, std::set<std::string>& names) {
    if (!makesOrLooks(line)) return;
    for (const TokenAnalysis& token : line.analysis)
        if (token.isIdentifier()) names.insert(nameText(token.name));
}

}  // namespace kelmora
