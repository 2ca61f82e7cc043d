#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/regex/regex.h"

namespace kelmora {

// A pattern with Lua's meaning: classes %a to %x, sets with ranges and ^, the counts * + - ?, captures,
// places as captures, %1 to %9, anchors at both ends. There is no %b and no %f.
class LuaPattern {
public:
    // Raises std::runtime_error for a pattern that is malformed.
    explicit LuaPattern(std::string_view text);

    // An anchored pattern matches at `from` or nowhere.
    bool isAnchored() const { return isAnchored_; }
    // Whether a capture, counted from 0, is a place and not a text.
    bool isPosition(std::size_t capture) const { return positions_[capture]; }
    bool search(std::string_view subject, std::size_t from, regex::Captures& captures) const;

private:
    std::vector<bool> positions_;
    bool isAnchored_;
    regex::Pattern expression_;
};

// Compiled once by its text. A pattern in use stays alive although the cache may let go of it.
std::shared_ptr<const LuaPattern> cachedLuaPattern(std::string_view text);

// True when every byte stands for itself.
bool isPlainPattern(std::string_view pattern);

// All matches front to back, none of them empty at the end of the one before. Pattern and subject are
// borrowed.
class LuaMatches {
public:
    LuaMatches(const LuaPattern& pattern, std::string_view subject) : pattern_(pattern), subject_(subject) {}

    bool next();
    const regex::Captures& captures() const { return captures_; }

private:
    const LuaPattern& pattern_;
    std::string_view subject_;
    std::size_t from_ = 0;
    std::size_t lastEnd_ = static_cast<std::size_t>(-1);
    bool isDone_ = false;
    regex::Captures captures_;
};

// Inserts a replacement, whose %0 to %9 stand for the match and its captures and %% for a percent sign. A
// pattern without captures has the match as its first. Raises for any other byte behind a percent sign.
void appendLuaReplacement(std::string& out, std::string_view replacement, const LuaPattern& pattern,
                          std::string_view subject, const regex::Captures& captures);

}  // namespace kelmora
