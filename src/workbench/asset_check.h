#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "script/parsed_line.h"

namespace kelmora {

// The files that a game comes with, by their paths below its folder, with `/` between.
class AssetFiles {
public:
    enum class Match : std::uint8_t { Exact, OtherCase, None };

    explicit AssetFiles(std::vector<std::string> paths);

    // Whether a file's path ends like this, with whole names of folders and file, or with `anywhere` within
    // its name. `found` gets the end of a path that differs in letter case alone.
    Match find(std::string_view end, bool anywhere, std::string& found) const;

private:
    std::vector<std::string> paths_;
    std::vector<std::string> lowered_;
    std::multimap<std::string, std::size_t, std::less<>> byName_;  // lowered file names
};

struct AssetFault {
    std::uint32_t token = 0;
    std::string message;
    std::string hint;
};

// Calls that make files, or look whether they are there, stand in the statement, or its value is a name that
// one of `handled` has.
std::vector<AssetFault> checkAssets(const ParsedScriptLine& line, const AssetFiles& files,
                                    const std::set<std::string>& handled);
// The names of a statement that makes files or looks for them.
void collectHandledNames(const ParsedScriptLine& line, std::set<std::string>& names);

}  // namespace kelmora
