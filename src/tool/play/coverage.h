#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tool/play/novel_view.h"

namespace kelmora {

// How much of a game some runs of it have reached.
class Coverage {
public:
    // What stands behind an update.
    void see(const NovelView& novel);
    // Behind a run: what there is, and which functions of the game's scripts were called. Those lie in
    // `package` and `scripts` of the folder, which ends with a separator.
    void endRun(const VesperScript& engine, const std::string& resources);
    void addText(const std::string& text) { texts_.insert(text); }

    bool wasTaken(const std::string& page, const std::string& words) const {
        return options_.contains({page, words});
    }

    // Lines for a person. The same game and seed give the same.
    std::string report() const;

private:
    std::string storyReport() const;
    std::string functionReport() const;
    std::vector<std::string> wholeTexts() const;

    Story story_;
    std::set<std::string> scenes_;
    std::set<std::string> pages_;
    std::set<std::pair<std::string, std::string>> options_;
    std::set<std::string> endings_;
    std::set<std::string> texts_;
    std::map<std::string, bool> functions_;  // name and file, whether it was called
};

}  // namespace kelmora
