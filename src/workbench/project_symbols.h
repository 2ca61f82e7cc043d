#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "workbench/symbols.h"

namespace kelmora {

// A piece of a source, in bytes.
struct SourceSpan {
    std::string path;
    std::uint32_t begin = 0;
    std::uint32_t end = 0;

    bool operator==(const SourceSpan&) const = default;
};

struct RenamePlan {
    std::vector<SourceSpan> places;  // all get the new name; empty when it is refused
    std::string refusal;             // why
};

struct NameInSight {
    std::string name;
    bool isFunction = false;
    bool isBound = false;  // a local, a parameter or a loop variable here
};

// The symbols of the scripts of one game, and what their names mean across them.
//
// Scopes are dynamic: a function that is called sees its caller's parameters and loop variables. So a name
// that is no local's may mean a global here and a parameter there, and all of those with one name are renamed
// together, unless a parameter's or loop variable's name is never used freely.
class ProjectSymbols {
public:
    void set(const std::string& path, std::string source);
    void remove(const std::string& path) { sources_.erase(path); }
    // A name that the engine or its boot script sets.
    void addHostName(std::string name) { hostNames_.insert(std::move(name)); }

    const SourceSymbols* find(const std::string& path) const;
    const std::map<std::string, SourceSymbols>& sources() const { return sources_; }

    // Where the name, the member or the label at an offset is made.
    std::vector<SourceSpan> definitions(const std::string& path, std::size_t offset) const;
    // All places of the variable or function at an offset, as the text tells; of a member and a label too.
    std::vector<SourceSpan> references(const std::string& path, std::size_t offset) const;
    // The name's span, if it can be renamed at all.
    std::optional<SourceSpan> renameable(const std::string& path, std::size_t offset) const;
    RenamePlan rename(const std::string& path, std::size_t offset, std::string_view newName) const;

    // Names that begin like this, in any case, and that a script here sets, by name.
    std::vector<NameInSight> namesInSight(const std::string& path, std::size_t offset,
                                          std::string_view prefix) const;
    std::set<std::string> membersOf(std::string_view table) const;
    std::set<std::string> labels() const;

private:
    struct Target {
        const SourceSymbols* source = nullptr;
        const NameOccurrence* occurrence = nullptr;
        std::string name;
        bool isLocal() const;
        bool isBound() const { return occurrence->binding != noIndex; }
    };

    std::optional<Target> targetAt(const std::string& path, std::size_t offset) const;
    bool isUsedFreely(std::string_view name) const;
    std::vector<SourceSpan> ofBinding(const std::string& path, const SourceSymbols& source,
                                      std::uint32_t binding) const;
    std::vector<SourceSpan> freeOnes(std::string_view name) const;
    std::vector<SourceSpan> allButLocals(std::string_view name) const;
    std::optional<SourceSpan> firstUse(std::string_view name) const;
    std::string conflict(const Target& target, std::string_view newName) const;
    std::vector<SourceSpan> stringPlaces(const std::string& path, std::size_t offset, bool onlyMade) const;
    std::string placeName(const SourceSpan& span) const;

    std::map<std::string, SourceSymbols> sources_;
    std::set<std::string, std::less<>> hostNames_;
};

}  // namespace kelmora
