#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "script/parsed_line.h"
#include "script/vesper_script.h"
#include "workbench/asset_check.h"
#include "workbench/diagnostic.h"

namespace kelmora {

// Checks the scripts of one game together: faults of form in every statement, block structure, names that are
// read and never set, members that a module does not have, labels that do not exist. Nothing is run.
class ScriptCheck {
public:
    // The engine has what the host registers; its names and its modules' members are known.
    explicit ScriptCheck(VesperScript& engine);

    // A script that is there when the game runs but is not checked itself.
    void addKnown(const std::string& source);
    // The same, of the host: what it reads, a game may set or leave alone.
    void addHostScript(const std::string& source);
    void add(const std::string& path, const std::string& source);
    // Takes the place of what stands under that path, checked or not, or is added.
    void replace(const std::string& path, const std::string& source, bool isChecked);
    // The files of the game that a script belongs to: its constants that look like one are held to them.
    void setAssets(const std::string& path, std::shared_ptr<const AssetFiles> files) {
        assets_[path] = std::move(files);
    }
    void remove(const std::string& path);
    // The faults of all that was added, in that order, line by line.
    std::vector<Diagnostic> run();

private:
    // What a source gives to the others' check.
    struct Facts {
        std::set<std::string> known;
        std::set<std::string> redefined;
        std::vector<std::pair<std::string, std::string>> members;
        std::set<std::string> texts;
        std::set<std::string> labels;
        std::set<std::string> handled;  // names in statements that make files or look for them
    };
    struct Source {
        std::string path;
        Facts facts;
        std::vector<std::string> physicalLines;
        std::vector<ParsedScriptLine> statements;
        std::vector<bool> isVariadic;    // of the function around each statement
        std::vector<Diagnostic> faults;  // of what could not be read
        bool isChecked = false;
    };

    Source& take(Source source, const std::string& text);
    Source readSource(Source source, const std::string& text);
    void read(Source& source);
    static void collect(Source& source);
    static void collectLine(const ParsedScriptLine& line, Facts& facts);
    // Puts together what the sources give.
    void gather();
    void check(const Source& source, std::vector<Diagnostic>& found);
    bool standsInText(const std::string& word) const;
    // Each name once.
    void checkNames(const Source& source, const ParsedScriptLine& line, std::set<std::string>& reported,
                    std::vector<Diagnostic>& found);
    void checkMembers(const Source& source, const ParsedScriptLine& line, std::vector<Diagnostic>& found);
    static void checkEntries(const Source& source, const ParsedScriptLine& line,
                             std::vector<Diagnostic>& found);
    void checkFiles(const Source& source, const ParsedScriptLine& line, std::vector<Diagnostic>& found) const;
    void checkLabels(const Source& source, const ParsedScriptLine& line, std::vector<Diagnostic>& found);

    VesperScript& engine_;
    Facts host_;                                            // what the engine gives
    std::set<std::string> hostTables_;                      // its modules and the library's tables
    std::map<std::string, std::set<std::string>> members_;  // of the modules and the library's tables
    std::set<std::string> known_;                           // names that something sets
    std::set<std::string> redefined_;                       // those that the sources set themselves
    std::set<std::string> texts_;                           // every string of the sources
    std::set<std::string> labels_;
    std::set<std::string> handled_;
    std::map<std::string, std::shared_ptr<const AssetFiles>> assets_;
    std::vector<Source> sources_;
};

}  // namespace kelmora
