#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/regex/regex.h"

namespace vesper::lua {

// A pattern of the string library: letters and classes with *, +, - and ?, sets, captures, %1 to %9, anchors.
// There is no %b and no %f.
class LuaPattern {
public:
    // Raises std::runtime_error for a pattern that is malformed.
    explicit LuaPattern(std::string_view pattern);

    // The leftmost match from there on; an anchored pattern matches there or nowhere.
    bool search(std::string_view subject, std::size_t from, kelmora::regex::Captures& captures) const;
    bool isAnchored() const { return isAnchored_; }
    // Whether a capture, counted from 0, is a place and not a text.
    bool isPosition(std::size_t capture) const { return positions_[capture]; }

private:
    std::vector<bool> positions_;
    bool isAnchored_ = false;
    kelmora::regex::Pattern expression_;
};

// Steps through all matches. An empty one right behind the last match does not count. The texts are borrowed.
class PatternMatches {
public:
    PatternMatches(const LuaPattern& pattern, std::string_view subject)
        : pattern_(pattern), subject_(subject) {}

    bool next();
    const kelmora::regex::Captures& captures() const { return captures_; }

private:
    const LuaPattern& pattern_;
    std::string_view subject_;
    std::size_t from_ = 0;
    std::size_t lastEnd_ = static_cast<std::size_t>(-1);
    bool isDone_ = false;
    kelmora::regex::Captures captures_;
};

// Compiled once by its text. A pattern in use stays alive although the cache may let go of it.
std::shared_ptr<const LuaPattern> cachedPattern(std::string_view text);

// True when every byte stands for itself.
bool isPlainPattern(std::string_view pattern);

std::string translateLuaPatternToRegex(std::string_view pattern, std::vector<bool>& positions);

}  // namespace vesper::lua
