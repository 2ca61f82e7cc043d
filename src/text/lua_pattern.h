#pragma once

#include <string>
#include <string_view>

#include "base/regex/regex.h"

namespace kelmora {

// A pattern with Lua's meaning: classes %a to %x, sets with ranges and ^, the counts * + - ?, captures, %1 to
// %9, anchors at both ends. There is no %b, no %f and no position capture.
class LuaPattern {
public:
    // Raises std::runtime_error for a pattern that is malformed.
    explicit LuaPattern(std::string_view text);

    std::size_t captureCount() const { return expression_.captureCount(); }
    // An anchored pattern matches at `from` or nowhere.
    bool isAnchored() const { return isAnchored_; }
    bool search(std::string_view subject, std::size_t from, regex::Captures& captures,
                regex::Scratch& scratch) const;

private:
    bool isAnchored_;
    regex::Pattern expression_;
};

// All matches front to back, none of them empty at the end of the one before. Everything is borrowed.
class LuaMatches {
public:
    LuaMatches(const LuaPattern& pattern, std::string_view subject, regex::Scratch& scratch)
        : pattern_(pattern), subject_(subject), scratch_(scratch) {}

    bool next();
    const regex::Captures& captures() const { return captures_; }

private:
    const LuaPattern& pattern_;
    std::string_view subject_;
    regex::Scratch& scratch_;
    regex::Captures captures_;
    std::size_t from_ = 0;
    bool hasMatched_ = false;
};

// Inserts a replacement, whose %0 to %9 stand for the match and its captures and %% for a percent sign. A
// pattern without captures has the match as its first. Raises for any other byte behind a percent sign.
void appendLuaReplacement(std::string& out, std::string_view replacement, std::string_view subject,
                          const regex::Captures& captures);

}  // namespace kelmora
