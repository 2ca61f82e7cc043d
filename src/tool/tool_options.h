#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kelmora {

// Wrong use of the authors' tool: exit code 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

struct ToolOption {
    std::string_view name;  // with its dashes
    bool takesValue = false;
};

// A command's options, before, between or behind its other words.
class ToolOptions {
public:
    // Raises UsageError for an option that is not known, with the nearest one that is, for one that lacks its
    // value, and for one that comes twice.
    ToolOptions(std::span<const std::string> words, std::span<const ToolOption> known);

    const std::vector<std::string>& words() const { return words_; }
    bool has(std::string_view option) const { return values_.contains(option); }
    std::optional<std::string> value(std::string_view option) const;
    // Raises UsageError for what is no whole number from `least` up.
    std::optional<std::int32_t> number(std::string_view option, std::int32_t least) const;

private:
    std::map<std::string, std::string, std::less<>> values_;
    std::vector<std::string> words_;
};

}  // namespace kelmora
